// The platform's numeric constants that the controls pass to the platform calls,
// under the platform's own names so that drawing code reads like the calls it makes.
// Win32 sources must include this before <windows.h>, whose macros carry the same values.
#pragma once
#include <cstdint>

namespace korvel {

// DrawEdge edge types
inline constexpr std::uint32_t BDR_RAISEDOUTER = 0x0001;
inline constexpr std::uint32_t BDR_SUNKENOUTER = 0x0002;
inline constexpr std::uint32_t BDR_RAISEDINNER = 0x0004;
inline constexpr std::uint32_t BDR_SUNKENINNER = 0x0008;
inline constexpr std::uint32_t BDR_OUTER = 0x0003;
inline constexpr std::uint32_t BDR_INNER = 0x000C;
inline constexpr std::uint32_t EDGE_RAISED = BDR_RAISEDOUTER | BDR_RAISEDINNER;
inline constexpr std::uint32_t EDGE_SUNKEN = BDR_SUNKENOUTER | BDR_SUNKENINNER;
inline constexpr std::uint32_t EDGE_ETCHED = BDR_SUNKENOUTER | BDR_RAISEDINNER;
inline constexpr std::uint32_t EDGE_BUMP = BDR_RAISEDOUTER | BDR_SUNKENINNER;

// DrawEdge flags
inline constexpr std::uint32_t BF_LEFT = 0x0001;
inline constexpr std::uint32_t BF_TOP = 0x0002;
inline constexpr std::uint32_t BF_RIGHT = 0x0004;
inline constexpr std::uint32_t BF_BOTTOM = 0x0008;
inline constexpr std::uint32_t BF_TOPLEFT = BF_TOP | BF_LEFT;
inline constexpr std::uint32_t BF_TOPRIGHT = BF_TOP | BF_RIGHT;
inline constexpr std::uint32_t BF_BOTTOMLEFT = BF_BOTTOM | BF_LEFT;
inline constexpr std::uint32_t BF_BOTTOMRIGHT = BF_BOTTOM | BF_RIGHT;
inline constexpr std::uint32_t BF_RECT = BF_LEFT | BF_TOP | BF_RIGHT | BF_BOTTOM;
inline constexpr std::uint32_t BF_DIAGONAL = 0x0010;
inline constexpr std::uint32_t BF_DIAGONAL_ENDTOPRIGHT = BF_DIAGONAL | BF_TOP | BF_RIGHT;
inline constexpr std::uint32_t BF_DIAGONAL_ENDTOPLEFT = BF_DIAGONAL | BF_TOP | BF_LEFT;
inline constexpr std::uint32_t BF_DIAGONAL_ENDBOTTOMLEFT = BF_DIAGONAL | BF_BOTTOM | BF_LEFT;
inline constexpr std::uint32_t BF_DIAGONAL_ENDBOTTOMRIGHT = BF_DIAGONAL | BF_BOTTOM | BF_RIGHT;
inline constexpr std::uint32_t BF_MIDDLE = 0x0800;
inline constexpr std::uint32_t BF_SOFT = 0x1000;
inline constexpr std::uint32_t BF_ADJUST = 0x2000;
inline constexpr std::uint32_t BF_FLAT = 0x4000;
inline constexpr std::uint32_t BF_MONO = 0x8000;

// Raster operations
inline constexpr std::uint32_t SRCCOPY = 0x00CC0020;
inline constexpr std::uint32_t SRCPAINT = 0x00EE0086;
inline constexpr std::uint32_t SRCAND = 0x008800C6;
inline constexpr std::uint32_t SRCINVERT = 0x00660046;
inline constexpr std::uint32_t NOTSRCCOPY = 0x00330008;
inline constexpr std::uint32_t BLACKNESS = 0x00000042;
inline constexpr std::uint32_t WHITENESS = 0x00FF0062;

// Binary raster operations (draw modes)
inline constexpr int R2_BLACK = 1;
inline constexpr int R2_NOT = 6;
inline constexpr int R2_XORPEN = 7;
inline constexpr int R2_MASKPEN = 9;
inline constexpr int R2_NOP = 11;
inline constexpr int R2_MERGEPEN = 15;
inline constexpr int R2_COPYPEN = 13;
inline constexpr int R2_WHITE = 16;

// DrawState
inline constexpr std::uint32_t DST_COMPLEX = 0x0000;
inline constexpr std::uint32_t DST_TEXT = 0x0001;
inline constexpr std::uint32_t DST_PREFIXTEXT = 0x0002;
inline constexpr std::uint32_t DST_ICON = 0x0003;
inline constexpr std::uint32_t DST_BITMAP = 0x0004;
inline constexpr std::uint32_t DSS_NORMAL = 0x0000;
inline constexpr std::uint32_t DSS_UNION = 0x0010;
inline constexpr std::uint32_t DSS_DISABLED = 0x0020;
inline constexpr std::uint32_t DSS_MONO = 0x0080;

// DrawText
inline constexpr std::uint32_t DT_TOP = 0x0000;
inline constexpr std::uint32_t DT_LEFT = 0x0000;
inline constexpr std::uint32_t DT_CENTER = 0x0001;
inline constexpr std::uint32_t DT_RIGHT = 0x0002;
inline constexpr std::uint32_t DT_VCENTER = 0x0004;
inline constexpr std::uint32_t DT_BOTTOM = 0x0008;
inline constexpr std::uint32_t DT_WORDBREAK = 0x0010;
inline constexpr std::uint32_t DT_SINGLELINE = 0x0020;
inline constexpr std::uint32_t DT_NOCLIP = 0x0100;
inline constexpr std::uint32_t DT_CALCRECT = 0x0400;
inline constexpr std::uint32_t DT_NOPREFIX = 0x0800;
inline constexpr std::uint32_t DT_END_ELLIPSIS = 0x8000;

// Background modes
inline constexpr int TRANSPARENT = 1;
inline constexpr int OPAQUE = 2;

// System colour indices
inline constexpr int COLOR_SCROLLBAR = 0;
inline constexpr int COLOR_BACKGROUND = 1;
inline constexpr int COLOR_ACTIVECAPTION = 2;
inline constexpr int COLOR_INACTIVECAPTION = 3;
inline constexpr int COLOR_MENU = 4;
inline constexpr int COLOR_WINDOW = 5;
inline constexpr int COLOR_WINDOWFRAME = 6;
inline constexpr int COLOR_MENUTEXT = 7;
inline constexpr int COLOR_WINDOWTEXT = 8;
inline constexpr int COLOR_CAPTIONTEXT = 9;
inline constexpr int COLOR_ACTIVEBORDER = 10;
inline constexpr int COLOR_INACTIVEBORDER = 11;
inline constexpr int COLOR_APPWORKSPACE = 12;
inline constexpr int COLOR_HIGHLIGHT = 13;
inline constexpr int COLOR_HIGHLIGHTTEXT = 14;
inline constexpr int COLOR_BTNFACE = 15;
inline constexpr int COLOR_BTNSHADOW = 16;
inline constexpr int COLOR_GRAYTEXT = 17;
inline constexpr int COLOR_BTNTEXT = 18;
inline constexpr int COLOR_INACTIVECAPTIONTEXT = 19;
inline constexpr int COLOR_BTNHIGHLIGHT = 20;
inline constexpr int COLOR_3DDKSHADOW = 21;
inline constexpr int COLOR_3DLIGHT = 22;
inline constexpr int COLOR_INFOTEXT = 23;
inline constexpr int COLOR_INFOBK = 24;
inline constexpr int COLOR_HOTLIGHT = 26;
inline constexpr int COLOR_GRADIENTACTIVECAPTION = 27;
inline constexpr int COLOR_GRADIENTINACTIVECAPTION = 28;
inline constexpr int COLOR_3DFACE = COLOR_BTNFACE;
inline constexpr int COLOR_3DSHADOW = COLOR_BTNSHADOW;
inline constexpr int COLOR_3DHILIGHT = COLOR_BTNHIGHLIGHT;
inline constexpr int kSysColorCount = 31;

// Window styles and positioning
inline constexpr std::int32_t GWL_STYLE = -16;
inline constexpr std::int32_t GWL_EXSTYLE = -20;
inline constexpr std::uint32_t WS_EX_TOPMOST = 0x00000008;
inline constexpr std::uint32_t WS_EX_TOOLWINDOW = 0x00000080;
inline constexpr std::uint32_t SWP_NOSIZE = 0x0001;
inline constexpr std::uint32_t SWP_NOMOVE = 0x0002;
inline constexpr std::uint32_t SWP_NOZORDER = 0x0004;
inline constexpr std::uint32_t SWP_NOACTIVATE = 0x0010;
inline constexpr std::uint32_t SWP_SHOWWINDOW = 0x0040;

// SystemParametersInfo
inline constexpr std::uint32_t SPI_GETNONCLIENTMETRICS = 41;

// ShowWindow
inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;

// Processes
inline constexpr std::uint32_t NORMAL_PRIORITY_CLASS = 0x00000020;
inline constexpr std::uint32_t INFINITE = 0xFFFFFFFF;

// Mouse buttons and shift state as the host reports them
inline constexpr int vbLeftButton = 1;
inline constexpr int vbRightButton = 2;
inline constexpr int vbMiddleButton = 4;

}  // namespace korvel
