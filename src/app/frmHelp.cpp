#include "app/frmHelp.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "app/QtIcon.h"

namespace gandrel {

static const char* const kGuideName = "scripting.md";

QString frmHelp::GuidePath() {
  QDir programDir(QCoreApplication::applicationDirPath());
  const QString candidates[] = {
      programDir.filePath(QStringLiteral("../share/doc/gandrel/") + kGuideName),
      QStringLiteral(GANDREL_SOURCE_DIR "/docs/") + kGuideName,
  };
  for (const QString& path : candidates)
    if (QFileInfo(path).isFile()) return QDir::cleanPath(path);
  return QString();
}

frmHelp::frmHelp(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName("frmHelp");
  setWindowTitle(tr("Gandrel Help: Writing scripts"));
  setWindowIcon(GandrelIcon());
  txtGuide = new QTextBrowser(this);
  txtGuide->setObjectName("txtGuide");
  txtGuide->setOpenLinks(false);
  txtGuide->document()->setDocumentMargin(12);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(txtGuide);

  QString path = GuidePath();
  QFile file(path);
  if (!path.isEmpty() && file.open(QIODevice::ReadOnly)) {
    txtGuide->setMarkdown(QString::fromUtf8(file.readAll()));
  } else {
    txtGuide->setPlainText(
        tr("The guide to writing scripts (%1) was not found. cmake --install puts it in "
           "share/doc/gandrel; it is also docs/%1 in Gandrel's source.")
            .arg(kGuideName));
  }
  resize(720, 640);
}

}  // namespace gandrel
