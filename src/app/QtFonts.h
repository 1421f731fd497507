// QtFonts: the font settings as Qt fonts.
//
// A font setting names a family that may not exist here (the built-in
// "MS Sans Serif" is a Windows font): such a family is shown in the system's
// default family, at the setting's size, weight and slant. The script editor
// is the exception: while its setting names the built-in family it shows the
// system's fixed-width font, as scripts line up in columns; a font chosen in
// Preferences wins. The setting itself keeps the name it was given, so
// nothing is lost on a machine that has it.
#pragma once

#include <QFont>
#include <QString>

#include "app/Settings.h"

namespace gandrel {

// The Qt font for a setting; a missing family or a size of 0 or less falls back
// to the system default's.
QFont ToQFont(const FontSetting& setting);

// The font a window shows for the setting of the font index: ToQFont, or the
// system's fixed-width font for the script editor's built-in setting.
QFont ShownFont(FontIndex index, const FontSetting& setting);

// The setting for a font chosen in a font dialog.
FontSetting FromQFont(const QFont& font);

// "DejaVu Sans, 8.25 pt, bold": how a setting is shown to the user; a family
// shown in another font says which: "MS Sans Serif (shown as DejaVu Sans), ...".
QString DescribeFont(const FontSetting& setting, FontIndex index);

}  // namespace gandrel
