#include "app/QtFonts.h"

#include <cmath>

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

#include "calc/NumberText.h"

namespace gandrel {

QFont ToQFont(const FontSetting& setting) {
  QFont font = QApplication::font();
  QString family = QString::fromStdString(setting.Name).trimmed();
  if (!family.isEmpty() && QFontDatabase::hasFamily(family)) font.setFamily(family);
  if (setting.Size > 0) font.setPointSizeF(setting.Size);
  font.setBold(setting.Bold);
  font.setItalic(setting.Italic);
  return font;
}

// The script editor's built-in setting names no font anybody chose.
static bool IsBuiltInScriptFont(FontIndex index, const FontSetting& setting) {
  return index == kScriptFont && setting.Name == FontSetting{}.Name;
}

QFont ShownFont(FontIndex index, const FontSetting& setting) {
  if (IsBuiltInScriptFont(index, setting))
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
  return ToQFont(setting);
}

FontSetting FromQFont(const QFont& font) {
  FontSetting setting;
  setting.Name = font.family().toStdString();
  // A font given in pixels has no point size (-1): keep the default size then.
  if (font.pointSizeF() > 0) setting.Size = static_cast<float>(font.pointSizeF());
  setting.Bold = font.bold();
  setting.Italic = font.italic();
  return setting;
}

QString DescribeFont(const FontSetting& setting, FontIndex index) {
  QStringList parts;
  QString family = QString::fromStdString(setting.Name);
  if (IsBuiltInScriptFont(index, setting) || !QFontDatabase::hasFamily(family.trimmed()))
    family += " (shown as " + QFontInfo(ShownFont(index, setting)).family() + ")";
  parts << family;
  // A float size such as 9.8 would print as 9.80000019073486: two decimals do.
  double size = std::round(static_cast<double>(setting.Size) * 100.0) / 100.0;
  parts << QString::fromStdString(FormatNumber(size)) + " pt";
  if (setting.Bold) parts << "bold";
  if (setting.Italic) parts << "italic";
  return parts.join(", ");
}

}  // namespace gandrel
