// frmAbout: the About box: name, version, what Gandrel is, the licence.
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace gandrel {

class frmAbout : public QDialog {
  Q_OBJECT

 public:
  explicit frmAbout(QWidget* parent = nullptr);

  QLabel* lblName;
  QLabel* lblVersion;
  QLabel* lblWhat;
  QLabel* lblLicence;
  QPushButton* btnOkay;
};

}  // namespace gandrel
