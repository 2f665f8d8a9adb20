// Values of style properties.
#pragma once

#include "richtext/formats/html_style.h"

namespace tockwise {

/// In points; nothing when it is no size. around: the size of the element around it.
std::optional<double> cssFontSize(QStringView text, double around);

/// 100 to 900; around is what "bolder" and "lighter" go by, and what stays when it is no weight.
int cssFontWeight(QStringView text, int around);

/// "italic bold 12pt/1.2 'Times New Roman', serif"
void applyFontShorthand(QStringView text, HtmlStyle& style);

} // namespace tockwise
