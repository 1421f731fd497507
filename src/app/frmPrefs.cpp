#include "app/frmPrefs.h"

#include <QCheckBox>
#include <QFontDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/DialogModels.h"
#include "app/QtEntryList.h"
#include "app/QtFonts.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/UserInterface.h"

namespace gandrel {

static const char* const kFontTitles[3] = {"Results font", "Script font", "Output font"};

static QCheckBox* MakeCheck(const QString& caption, bool checked, QWidget* parent) {
  auto* box = new QCheckBox(caption, parent);
  box->setChecked(checked);
  return box;
}

static QSpinBox* MakeSpin(int low, int high, int value, QWidget* parent) {
  auto* spin = new QSpinBox(parent);
  spin->setRange(low, high);
  spin->setValue(value);
  return spin;
}

frmPrefs::frmPrefs(QWidget* parent) : QDialog(parent) {
  setObjectName("frmPrefs");
  setWindowTitle(tr("Preferences"));

  txtDieType = new QLineEdit(QString::fromStdString(DefaultDieText(engineSettings.DieType)), this);
  txtDieType->setToolTip(
      tr("The die a bare \"d\" rolls: d and a number of sides, such as d6, or one of your die "
         "types, such as dfate"));
  chkLongResults = MakeCheck(tr("&Long results: list every die"), engineSettings.LongResults, this);
  spinMargin = MakeSpin(0, 99, engineSettings.MarginIncrement, this);
  auto* rolling = new QGroupBox(tr("Rolling"), this);
  auto* rollingForm = new QFormLayout(rolling);
  rollingForm->addRow(tr("De&fault die:"), txtDieType);
  rollingForm->addRow(chkLongResults);
  rollingForm->addRow(tr("&Indent width:"), spinMargin);

  chkAddDice = MakeCheck(tr("&Put rolled die values in the history"), settings.AddDice, this);
  chkNewFirst = MakeCheck(tr("&New entries at the top"), settings.NewFirst, this);
  spinKeepNum = MakeSpin(0, 32767, settings.KeepNum, this);
  chkKeepAlways = MakeCheck(tr("Always-add items &stay in place"), settings.KeepAlways, this);
  auto* history = new QGroupBox(tr("History"), this);
  auto* historyForm = new QFormLayout(history);
  historyForm->addRow(chkAddDice);
  historyForm->addRow(chkNewFirst);
  historyForm->addRow(tr("&Keep entries:"), spinKeepNum);
  historyForm->addRow(chkKeepAlways);

  chkOnTop = MakeCheck(tr("Stay on top of other win&dows"), settings.OnTop, this);
  auto* window = new QGroupBox(tr("Window"), this);
  auto* windowForm = new QFormLayout(window);
  windowForm->addRow(chkOnTop);
  const QString fontLabels[3] = {tr("&Results:"), tr("S&cript:"), tr("Outpu&t:")};
  for (int i = 0; i < 3; ++i) {
    fonts[i] = settings.Fonts[i];
    btnFont[i] = new QPushButton(this);
    btnFont[i]->setAutoDefault(false);
    ShowFont(i);
    connect(btnFont[i], &QPushButton::clicked, this, [this, i] { ChooseFont(i); });
    windowForm->addRow(fontLabels[i], btnFont[i]);
  }

  auto checkItem = [](const std::string& item, const std::vector<std::string>& others) {
    EntryVerdict verdict;
    verdict.refusal = CheckAlwaysAddItem(item, others);
    verdict.stored = Trim(item);
    return verdict;
  };
  lstAlwaysAdd = new QtEntryList(true, checkItem, nullptr, this);
  std::vector<std::string> items;
  for (size_t i = 1; i < AlwaysAddItems.size(); ++i)
    items.push_back(AlwaysAddItems[i]);
  lstAlwaysAdd->SetEntries(items);
  auto* always = new QGroupBox(tr("Always-add items (always in the die-value list)"), this);
  auto* alwaysLayout = new QVBoxLayout(always);
  alwaysLayout->addWidget(lstAlwaysAdd);

  btnOkay = new QPushButton(tr("&Okay"), this);
  btnOkay->setAutoDefault(false);
  btnCancel = new QPushButton(tr("Cancel"), this);
  btnCancel->setAutoDefault(false);
  connect(btnOkay, &QPushButton::clicked, this, [this] {
    if (Apply()) accept();
  });
  connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);

  auto* left = new QVBoxLayout;
  left->addWidget(rolling);
  left->addWidget(history);
  left->addWidget(window);
  left->addStretch();
  auto* columns = new QHBoxLayout;
  columns->addLayout(left);
  columns->addWidget(always, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(btnOkay);
  buttons->addWidget(btnCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(columns, 1);
  layout->addLayout(buttons);
  // A stray key must not change a setting: the dialog opens on Okay, where
  // Space confirms what is shown.
  btnOkay->setFocus();
}

void frmPrefs::ShowFont(int index) {
  auto font = static_cast<FontIndex>(index);
  btnFont[index]->setText(DescribeFont(fonts[index], font).replace("&", "&&"));
  btnFont[index]->setFont(ShownFont(font, fonts[index]));
}

void frmPrefs::ChooseFont(int index) {
  bool chosen = false;
  QFont font = QFontDialog::getFont(&chosen, ShownFont(static_cast<FontIndex>(index), fonts[index]),
                                    this, QString::fromUtf8(kFontTitles[index]));
  if (!chosen) return;
  fonts[index] = FromQFont(font);
  ShowFont(index);
}

bool frmPrefs::Apply() {
  DefaultDieVerdict die = CheckDefaultDie(txtDieType->text().toStdString());
  if (!die.refusal.empty()) {
    MsgBox(die.refusal);
    txtDieType->setFocus();
    txtDieType->selectAll();
    return false;
  }
  engineSettings.DieType = die.stored;
  settings.AddDice = chkAddDice->isChecked();
  settings.NewFirst = chkNewFirst->isChecked();
  settings.KeepNum = static_cast<int16_t>(spinKeepNum->value());
  settings.KeepAlways = chkKeepAlways->isChecked();
  engineSettings.LongResults = chkLongResults->isChecked();
  engineSettings.MarginIncrement = static_cast<int16_t>(spinMargin->value());
  settings.OnTop = chkOnTop->isChecked();
  for (int i = 0; i < 3; ++i)
    settings.Fonts[i] = fonts[i];
  ApplyAlwaysAddItems(lstAlwaysAdd->Entries());
  emit applied();
  SaveSettings();
  return true;
}

}  // namespace gandrel
