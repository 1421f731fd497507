#include "app/frmAbout.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/QtIcon.h"

namespace gandrel {

static QLabel* PlainLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
  setObjectName("frmAbout");
  setWindowTitle(tr("About Gandrel"));

  auto* picture = new QLabel(this);
  picture->setPixmap(GandrelIcon().pixmap(64, 64));
  picture->setAlignment(Qt::AlignTop);

  lblName = PlainLabel("Gandrel", this);
  QFont big = lblName->font();
  big.setPointSizeF(big.pointSizeF() * 1.8);
  big.setBold(true);
  lblName->setFont(big);
  lblVersion = PlainLabel(tr("Version %1").arg(GANDREL_VERSION), this);
  lblWhat = PlainLabel(tr("A dice roller and dice calculator with a small script language of "
                          "its own: type a die value such as 3d6+2 and press Enter."),
                       this);
  lblLicence = PlainLabel(tr("Copyright (c) 2026 The Gandrel developers.\n"
                             "Free software under the MIT License."),
                          this);
  btnOkay = new QPushButton(tr("&Okay"), this);
  btnOkay->setDefault(true);
  connect(btnOkay, &QPushButton::clicked, this, &QDialog::accept);

  auto* texts = new QVBoxLayout;
  texts->addWidget(lblName);
  texts->addWidget(lblVersion);
  texts->addSpacing(8);
  texts->addWidget(lblWhat);
  texts->addSpacing(8);
  texts->addWidget(lblLicence);
  auto* top = new QHBoxLayout;
  top->addWidget(picture);
  top->addSpacing(12);
  top->addLayout(texts, 1);
  auto* bottom = new QHBoxLayout;
  bottom->addStretch();
  bottom->addWidget(btnOkay);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addStretch();
  layout->addLayout(bottom);
  setMinimumWidth(380);
}

}  // namespace gandrel
