// QtButtons: the push buttons the windows build in code.
#pragma once

#include <QPushButton>
#include <QString>

namespace gandrel {

// A button named name (none by default) that Enter presses only when the
// button has the focus: Enter in the windows' edit boxes rolls, calculates or
// adds the entry, and must not also press a button.
inline QPushButton* MakeButton(const QString& caption, QWidget* parent, const char* name = "") {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace gandrel
