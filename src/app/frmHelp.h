// frmHelp: the guide to writing scripts, in a window of its own.
//
// Shows docs/scripting.md, read-only, as the Markdown it is written in. It is
// looked for where cmake --install puts it (share/doc/gandrel beside the
// program's bin folder), then in the source tree the program was built from;
// nothing is fetched from the network. A guide that is not found says where
// it should be.
#pragma once

#include <QString>
#include <QWidget>

class QTextBrowser;

namespace gandrel {

class frmHelp : public QWidget {
  Q_OBJECT

 public:
  explicit frmHelp(QWidget* parent = nullptr);

  // The guide's file, "" when none was found.
  static QString GuidePath();

  QTextBrowser* txtGuide;
};

}  // namespace gandrel
