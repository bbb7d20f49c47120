#include "tarnis/tools/style/styletheme_p.h"

namespace tarnis {

namespace {

// The colours of the curves were optimised numerically: each near a given hue, with a contrast of 3:1 (4.5:1 on paper
// and for high contrast), and with maximum distance, also for users with colour vision deficiency. The test of the
// themes repeats the calculation.

StyleTheme light()
{
    return { QColor(0xffffffU), QColor(0xffffffU), QColor(0x20242aU), QColor(0x5c636dU), QColor(0x4a5058U),
        QColor(0xe2e5e9U), QColor(0xb00020U), 1.5, false,
        { QColor(0x0967d0U), QColor(0xaa2400U), QColor(0x1e7a3dU), QColor(0x9749a4U), QColor(0xa47f03U),
            QColor(0x222222U), QColor(0xd84f92U), QColor(0x20a1aeU) } };
}

StyleTheme dark()
{
    return { QColor(0x1b1d22U), QColor(0x1b1d22U), QColor(0xe8eaedU), QColor(0xa9afb8U), QColor(0x9aa1abU),
        QColor(0x343840U), QColor(0xff7b72U), 1.5, false,
        { QColor(0x5aaaffU), QColor(0xef9134U), QColor(0x57df9dU), QColor(0xc15dbdU), QColor(0xf4e34dU),
            QColor(0xf1f2f2U), QColor(0xff6969U), QColor(0x93bebdU) } };
}

StyleTheme print()
{
    return { QColor(0xffffffU), QColor(0xffffffU), QColor(0x000000U), QColor(0x333333U), QColor(0x000000U),
        QColor(0xd4d4d4U), QColor(0xb00020U), 1.2, true,
        { QColor(0x000000U), QColor(0xd24251U), QColor(0x0c65ceU), QColor(0x538300U), QColor(0x71208fU),
            QColor(0x653e00U), QColor(0x004d52U), QColor(0xb63580U) } };
}

StyleTheme highContrast()
{
    return { QColor(0x000000U), QColor(0x000000U), QColor(0xffffffU), QColor(0xffffffU), QColor(0xffffffU),
        QColor(0x5c5c5cU), QColor(0xff6b6bU), 2.5, true,
        { QColor(0xffe600U), QColor(0x069299U), QColor(0xff7a18U), QColor(0x7aff71U), QColor(0xfe8ad6U),
            QColor(0xffffffU), QColor(0x8f98fbU), QColor(0xfb3b3fU) } };
}

} // namespace

const StyleTheme& styleTheme(PlotStyle::Theme theme)
{
    static const std::array<StyleTheme, 4> themes { light(), dark(), print(), highContrast() };
    return themes.at(static_cast<std::size_t>(theme));
}

} // namespace tarnis
