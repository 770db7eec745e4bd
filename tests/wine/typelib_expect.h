// What the KorvelUI99 type library (typelib/korvelui99.idl, built with widl) must
// contain, member by member. A test loads the built .tlb through ITypeLib and
// ITypeInfo and compares it with these tables. No platform header is needed here.
//
// Types are written as in the IDL: short, long, VARIANT_BOOL, BSTR, VARIANT,
// OLE_COLOR, IFontDisp*, IPictureDisp*, an enumeration's name, or SAFEARRAY(T).
// A by-reference argument ([in, out]) adds one level of indirection to its type.
// The retval of a property get or of a method is the function's result, not an
// argument; a put's value is its last argument. Defaults are given as text: the
// string itself for BSTR arguments, the decimal value for numbers and booleans.
#pragma once

#include <vector>

namespace korvel::typelib_expect {

enum class Invoke { Get, Put, PutRef, Method };

enum FuncFlags : unsigned { kHidden = 1, kNonBrowsable = 2 };

struct Param {
    const char* name;
    const char* type;
    bool byRef;
    bool optional;
    const char* defaultValue;  // nullptr: no default
};

struct Function {
    const char* name;
    long dispid;
    Invoke kind;
    std::vector<Param> params;
    const char* result;  // "" for none
    unsigned flags;      // FuncFlags
    const char* help;    // "" for none
};

struct Event {
    const char* name;
    long dispid;
    std::vector<Param> params;
    const char* help;
};

struct Interface {
    const char* name;
    const char* iid;
    std::vector<Function> functions;  // dual interfaces
    std::vector<Event> events;        // event dispinterfaces
    bool isEventInterface;
};

struct Class {
    const char* name;
    const char* clsid;
    const char* help;
    bool isControl;
    const char* defaultInterface;
    const char* eventInterface;  // nullptr for property pages
};

struct EnumValue {
    const char* name;     // identifier in the type library
    long value;
    const char* display;  // the name users see in documentation
};

struct Enumeration {
    const char* name;
    std::vector<EnumValue> values;
};

inline constexpr const char* kLibraryName = "KorvelUI99";
inline constexpr const char* kLibid = "{CF2CAB42-70B6-40C3-8356-32EC8547176E}";
inline constexpr unsigned short kMajorVersion = 1;
inline constexpr unsigned short kMinorVersion = 0;

inline const std::vector<Class> kClasses = {
    {"KorvelToolbar", "{BE516F7A-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelToolbar", true, "_KorvelToolbar", "__KorvelToolbar"},
    {"KorvelColor", "{BE516F7F-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelColor", true, "_KorvelColor", "__KorvelColor"},
    {"KorvelSpin", "{BE516F84-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelSpin", true, "_KorvelSpin", "__KorvelSpin"},
    {"KorvelOption", "{BE516F87-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelOption", true, "_KorvelOption", "__KorvelOption"},
    {"KorvelTray", "{BE516F8B-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelTray", true, "_KorvelTray", "__KorvelTray"},
    {"KorvelDialog", "{BE516F8E-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelDialog", true, "_KorvelDialog", "__KorvelDialog"},
    {"KorvelLink", "{BE516F91-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelLink", true, "_KorvelLink", "__KorvelLink"},
    {"KorvelJoystick", "{BE516F94-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelJoystick", true, "_KorvelJoystick", "__KorvelJoystick"},
    {"KorvelStatus", "{BE516F97-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelStatus", true, "_KorvelStatus", "__KorvelStatus"},
    {"KorvelTab", "{BE516FA3-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelTab", true, "_KorvelTab", "__KorvelTab"},
    {"KorvelAnimation", "{BE516FA8-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelAnimation", true, "_KorvelAnimation", "__KorvelAnimation"},
    {"KorvelResize", "{BE516FAC-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelResize", true, "_KorvelResize", "__KorvelResize"},
    {"KorvelBar", "{BE516FB1-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelBar", true, "_KorvelBar", "__KorvelBar"},
    {"KorvelDivider", "{BE516FB5-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelDivider", true, "_KorvelDivider", "__KorvelDivider"},
    {"KorvelBrowseBox", "{BE516FB9-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelBrowseBox", true, "_KorvelBrowseBox", "__KorvelBrowseBox"},
    {"KorvelMiniSlider", "{BE516FBD-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelMiniSlider", true, "_KorvelMiniSlider", "__KorvelMiniSlider"},
    {"ktButtons", "{BE516F82-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelToolbar Buttons", false, "_ktButtons", nullptr},
    {"ksPanels", "{BE516FC1-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelStatus Panels", false, "_ksPanels", nullptr},
    {"kdCustom", "{BE516FC5-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelDialog Custom", false, "_kdCustom", nullptr},
    {"krControls", "{BE516FC7-863D-11D2-BF9B-8AF16ECF9476}", "KorvelUI - KorvelResize Controls", false, "_krControls", nullptr},
};

inline const std::vector<Interface> kInterfaces = {
    {"_KorvelToolbar", "{E4DD21E7-B7C2-11D2-BF9B-AB945231CF7A}", {
        {"BorderStyle", 1, Invoke::Get, {}, "ktBorder", 0, "Specifies the type of border to draw around the toolbar."},
        {"BorderStyle", 1, Invoke::Put, {{"NewValue", "ktBorder", false, false, nullptr}}, "", 0, "Specifies the type of border to draw around the toolbar."},
        {"Picture", 2, Invoke::Get, {}, "IPictureDisp*", 0, "List of images to use for buttons on the toolbar."},
        {"Picture", 2, Invoke::PutRef, {{"NewValue", "IPictureDisp*", false, false, nullptr}}, "", 0, "List of images to use for buttons on the toolbar."},
        {"MaskColor", 3, Invoke::Get, {}, "OLE_COLOR", 0, "Color designated as transparent."},
        {"MaskColor", 3, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "Color designated as transparent."},
        {"UseMaskColor", 4, Invoke::Get, {}, "VARIANT_BOOL", 0, "If True, MaskColor will be replaced with the background color."},
        {"UseMaskColor", 4, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "If True, MaskColor will be replaced with the background color."},
        {"Enabled", 5, Invoke::Get, {{"Key", "BSTR", false, false, nullptr}}, "VARIANT_BOOL", 0, "Determines whether or not a button can be clicked."},
        {"Enabled", 5, Invoke::Put, {{"Key", "BSTR", false, false, nullptr}, {"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether or not a button can be clicked."},
        {"Value", 0, Invoke::Get, {{"Key", "BSTR", false, false, nullptr}}, "VARIANT_BOOL", 0, "The status of a checkbox button, checked is True.  There is no mixed state."},
        {"Value", 0, Invoke::Put, {{"Key", "BSTR", false, false, nullptr}, {"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "The status of a checkbox button, checked is True.  There is no mixed state."},
        {"ToolTipText", 6, Invoke::Get, {{"Key", "BSTR", false, false, nullptr}}, "VARIANT_BOOL", 0, "The tooltip text to use when the cursor is over a button."},
        {"Style", 7, Invoke::Get, {{"Key", "BSTR", false, false, nullptr}}, "ktStyle", 0, "Determines the style of a toolbar item.  0=Button, 1=Check, 2=Separator, 3=Placeholder."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
        {"Customize", 8, Invoke::Method, {{"UpdateControl", "VARIANT_BOOL", false, false, nullptr}, {"Count", "short", true, false, nullptr}, {"Key", "SAFEARRAY(BSTR)", true, false, nullptr}, {"Tip", "SAFEARRAY(BSTR)", true, false, nullptr}, {"Style", "SAFEARRAY(ktStyle)", true, false, nullptr}, {"Enabled", "SAFEARRAY(VARIANT_BOOL)", true, false, nullptr}, {"Value", "SAFEARRAY(VARIANT_BOOL)", true, false, nullptr}, {"PlaceholderWidth", "SAFEARRAY(short)", true, false, nullptr}}, "", 0, ""},
        {"GetDefaultFont", 9, Invoke::Method, {}, "IFontDisp*", 0, ""},
    }, {}, false},
    {"__KorvelToolbar", "{E4DD21E8-B7C2-11D2-BF9B-AB945231CF7A}", {}, {
        {"Click", -600, {{"Key", "BSTR", false, false, nullptr}, {"X", "long", false, false, nullptr}, {"Y", "long", false, false, nullptr}}, "Raised when a button is clicked.  Coordinates of the lower-right corner of the button as well as the button's key are provided."},
        {"RightClick", 1, {{"Key", "BSTR", false, false, nullptr}, {"X", "long", false, false, nullptr}, {"Y", "long", false, false, nullptr}}, "Raised when a button is clicked with the right mouse button.  Coordinates of the lower-right corner of the button as well as the button's key are provided."},
        {"Hover", 2, {{"Key", "BSTR", false, false, nullptr}, {"ToolTipText", "BSTR", false, false, nullptr}}, "Raised when the cursor enters or leaves a button."},
    }, true},
    {"_KorvelColor", "{F326D138-757B-4ADF-872C-BD4C2EFC21AE}", {
        {"Enabled", 1, Invoke::Get, {}, "VARIANT_BOOL", 0, "Returns/sets whether the control responds to user-generated events."},
        {"Enabled", 1, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Returns/sets whether the control responds to user-generated events."},
        {"Color", 0, Invoke::Get, {}, "OLE_COLOR", 0, "Returns/sets the color selected in the control."},
        {"Color", 0, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "Returns/sets the color selected in the control."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelColor", "{4732A52B-9842-4AE2-91FC-84A48D9F2FFA}", {}, {
        {"Change", 1, {{"NewColor", "OLE_COLOR", false, false, nullptr}}, ""},
    }, true},
    {"_KorvelSpin", "{A7AA54D0-8F7D-4DAE-A89A-2AFFD8221F5A}", {
        {"Enabled", 1, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether the control can be edited."},
        {"Enabled", 1, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether the control can be edited."},
        {"Value", 0, Invoke::Get, {}, "short", 0, "Returns or sets the value shown in the text box portion of the SpinBox control."},
        {"Value", 0, Invoke::Put, {{"NewValue", "short", false, false, nullptr}}, "", 0, "Returns or sets the value shown in the text box portion of the SpinBox control."},
        {"Min", 2, Invoke::Get, {}, "short", 0, "Returns or sets the minimum value for the SpinBox control."},
        {"Min", 2, Invoke::Put, {{"NewValue", "short", false, false, nullptr}}, "", 0, "Returns or sets the minimum value for the SpinBox control."},
        {"Max", 3, Invoke::Get, {}, "short", 0, "Returns or sets the maximum value for a SpinBox control."},
        {"Max", 3, Invoke::Put, {{"NewValue", "short", false, false, nullptr}}, "", 0, "Returns or sets the maximum value for a SpinBox control."},
        {"SelectAll", 4, Invoke::Method, {}, "", 0, "Selects the value in the text box portion of the control."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
        {"Font", 5, Invoke::Get, {}, "IFontDisp*", 0, "The font to display the text in.  (Should be 8-point)"},
        {"Font", 5, Invoke::PutRef, {{"NewValue", "IFontDisp*", false, false, nullptr}}, "", 0, "The font to display the text in.  (Should be 8-point)"},
    }, {}, false},
    {"__KorvelSpin", "{0F5D4CB8-4879-4D6B-AF0D-FC49914056BB}", {}, {
        {"Change", 1, {{"NewValue", "short", false, false, nullptr}, {"OldValue", "short", false, false, nullptr}}, "Raised when the value of the control is changed."},
    }, true},
    {"_KorvelOption", "{010A666C-2757-4818-9C2D-EB2D306ABCFD}", {
        {"Caption", 1, Invoke::Get, {}, "BSTR", 0, "The caption to display on the frame."},
        {"Caption", 1, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The caption to display on the frame."},
        {"BackColor", 2, Invoke::Get, {}, "OLE_COLOR", 0, "Background color for the control."},
        {"BackColor", 2, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "Background color for the control."},
        {"Font", 3, Invoke::Get, {}, "IFontDisp*", 0, "The font to use on the control."},
        {"Font", 3, Invoke::PutRef, {{"NewValue", "IFontDisp*", false, false, nullptr}}, "", 0, "The font to use on the control."},
        {"Enabled", 4, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether or not the user can make a selection."},
        {"Enabled", 4, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether or not the user can make a selection."},
        {"BorderStyle", 5, Invoke::Get, {}, "FrameBorderType", 0, "The type of border to use."},
        {"BorderStyle", 5, Invoke::Put, {{"NewValue", "FrameBorderType", false, false, nullptr}}, "", 0, "The type of border to use."},
        {"Options", 6, Invoke::Get, {}, "BSTR", 0, "The captions of the option buttons, separated by the | character.  Example: Option 1|Option 2|Option 3"},
        {"Options", 6, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The captions of the option buttons, separated by the | character.  Example: Option 1|Option 2|Option 3"},
        {"Value", 0, Invoke::Get, {}, "short", 0, "The index (starting at 0) of the option selected, or -1 if none is selected."},
        {"Value", 0, Invoke::Put, {{"NewValue", "short", false, false, nullptr}}, "", 0, "The index (starting at 0) of the option selected, or -1 if none is selected."},
        {"ForeColor", 7, Invoke::Get, {}, "OLE_COLOR", 0, "The color to use for the text on the control."},
        {"ForeColor", 7, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "The color to use for the text on the control."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelOption", "{390AEE68-205A-48DF-A8CB-D796049FE665}", {}, {
        {"Change", 1, {{"NewValue", "short", false, false, nullptr}}, "Raised when the Value property changes."},
    }, true},
    {"_KorvelTray", "{2D1F976D-65B2-4F1B-8663-6781D2331C87}", {
        {"ToolTipText", 1, Invoke::Get, {}, "BSTR", 0, "The tooltip caption to display when the cursor hovers over the icon."},
        {"ToolTipText", 1, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The tooltip caption to display when the cursor hovers over the icon."},
        {"Icon", 2, Invoke::Get, {}, "IPictureDisp*", 0, "The icon to show in the taskbar tray."},
        {"Icon", 2, Invoke::PutRef, {{"NewValue", "IPictureDisp*", false, false, nullptr}}, "", 0, "The icon to show in the taskbar tray."},
        {"Enabled", 3, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether or not the icon raises events."},
        {"Enabled", 3, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether or not the icon raises events."},
        {"Visible", 4, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether or not the icon is visible in the taskbar tray."},
        {"Visible", 4, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether or not the icon is visible in the taskbar tray."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelTray", "{A49BB94B-9F90-4F59-A77F-9E88B5BE56EC}", {}, {
        {"Click", -600, {}, "Raised when the icon is clicked with the left mouse button."},
        {"RightClick", 1, {}, "Raised when the icon is clicked with the right mouse button."},
        {"DblClick", -601, {}, "Raised when the icon is double-clicked with the left mouse button."},
    }, true},
    {"_KorvelDialog", "{C63D2A49-C846-4D91-8C1F-E76C32ADCDD9}", {
        {"ShowOpen", 1, Invoke::Method, {{"Filter", "BSTR", false, true, ""}, {"Title", "BSTR", false, true, "Open file..."}}, "BSTR", 0, "Shows the File Open... dialog box."},
        {"ShowSave", 2, Invoke::Method, {{"Filter", "BSTR", false, true, ""}, {"Title", "BSTR", false, true, "Save file as..."}, {"Extension", "BSTR", false, true, ""}}, "BSTR", 0, "Shows the File Save As... dialog box."},
        {"ShowColor", 3, Invoke::Method, {}, "long", 0, "Shows the Color dialog box."},
        {"ShowFolder", 4, Invoke::Method, {{"Title", "BSTR", false, true, "Choose a folder."}}, "VARIANT", 0, "Shows the Choose Folder... dialog box."},
        {"ShowFont", 5, Invoke::Method, {{"FontObject", "IFontDisp*", true, false, nullptr}, {"Color", "OLE_COLOR", true, true, "0"}}, "VARIANT", 0, "Shows the font common dialog."},
        {"Customize", 6, Invoke::Method, {{"UpdateControl", "VARIANT_BOOL", false, false, nullptr}, {"Count", "short", true, false, nullptr}, {"dName", "SAFEARRAY(BSTR)", true, false, nullptr}, {"Title", "SAFEARRAY(BSTR)", true, false, nullptr}, {"Filter", "SAFEARRAY(BSTR)", true, false, nullptr}, {"DefExt", "SAFEARRAY(BSTR)", true, false, nullptr}, {"dType", "SAFEARRAY(short)", true, false, nullptr}}, "", 0, ""},
        {"ShowCustom", 7, Invoke::Method, {{"DialogName", "BSTR", false, false, nullptr}}, "BSTR", 0, "Shows a predefined Custom dialog box."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelDialog", "{9DD262F3-6F92-482F-8C7C-CC950A4690FA}", {}, {
    }, true},
    {"_KorvelLink", "{DACBFF87-D1DD-4F3C-AB6F-120D2CB14437}", {
        {"Caption", 1, Invoke::Get, {}, "BSTR", 0, "The caption to show instead of the URL."},
        {"Caption", 1, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The caption to show instead of the URL."},
        {"URL", 0, Invoke::Get, {}, "BSTR", 0, "The Internet URL to visit when the link is clicked.  (Prefix with \"mailto:\" if it's an E-Mail address)"},
        {"URL", 0, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The Internet URL to visit when the link is clicked.  (Prefix with \"mailto:\" if it's an E-Mail address)"},
        {"Enabled", 2, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether or not the link is active and can be clicked."},
        {"Enabled", 2, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether or not the link is active and can be clicked."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
        {"ForeColor", 3, Invoke::Get, {}, "OLE_COLOR", 0, "The color to use when the link is enabled."},
        {"ForeColor", 3, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "The color to use when the link is enabled."},
        {"BackColor", 4, Invoke::Get, {}, "OLE_COLOR", 0, "The background color for the link."},
        {"BackColor", 4, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "The background color for the link."},
        {"Font", 5, Invoke::Get, {}, "IFontDisp*", 0, "The font to display the link in."},
        {"Font", 5, Invoke::PutRef, {{"NewValue", "IFontDisp*", false, false, nullptr}}, "", 0, "The font to display the link in."},
        {"HoverColor", 6, Invoke::Get, {}, "OLE_COLOR", 0, "The color to show the link in when the mouse cursor is over it."},
        {"HoverColor", 6, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "The color to show the link in when the mouse cursor is over it."},
    }, {}, false},
    {"__KorvelLink", "{8A56F038-6689-4A2E-94E0-71B43E652417}", {}, {
        {"Click", -600, {}, "Raised when the link is clicked."},
    }, true},
    {"_KorvelJoystick", "{34866D6B-0D69-4E04-811E-7797F6A6FFD4}", {
        {"GetState", 1, Invoke::Method, {{"X", "short", true, false, nullptr}, {"Y", "short", true, false, nullptr}, {"Button1", "short", true, false, nullptr}, {"Button2", "short", true, false, nullptr}, {"Button3", "short", true, false, nullptr}, {"Button4", "short", true, false, nullptr}}, "", 0, "Returns the current joystick state."},
        {"ShowControlPanel", 2, Invoke::Method, {{"WaitToFinish", "VARIANT_BOOL", false, true, "0"}}, "", 0, "Displays the Joystick properties control panel."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelJoystick", "{04BDC19D-5403-4647-B36C-A9D4C3EF8D96}", {}, {
        {"ButtonDown", 1, {{"Button", "short", false, false, nullptr}}, "Raised when a button is pressed."},
        {"ButtonUp", 2, {{"Button", "short", false, false, nullptr}}, "Raised when a button is released."},
        {"Update", 3, {{"X", "short", false, false, nullptr}, {"Y", "short", false, false, nullptr}, {"Button1", "short", false, false, nullptr}, {"Button2", "short", false, false, nullptr}, {"Button3", "short", false, false, nullptr}, {"Button4", "short", false, false, nullptr}}, ""},
    }, true},
    {"_KorvelStatus", "{90D72661-8CF5-4EC5-A2AD-7FBCEBDDBACB}", {
        {"SimpleMode", 1, Invoke::Get, {}, "VARIANT_BOOL", 0, "If True, only a single panel will be displayed, with the text in SimpleText."},
        {"SimpleMode", 1, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "If True, only a single panel will be displayed, with the text in SimpleText."},
        {"SimpleText", 0, Invoke::Get, {}, "BSTR", 0, "The text to show on the status bar when in Simple mode."},
        {"SimpleText", 0, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The text to show on the status bar when in Simple mode."},
        {"PanelWidth", 2, Invoke::Get, {{"Index", "short", false, false, nullptr}}, "short", 0, "The width of a panel, in pixels, or 0 to automatically size the panel."},
        {"PanelWidth", 2, Invoke::Put, {{"Index", "short", false, false, nullptr}, {"NewValue", "short", false, false, nullptr}}, "", 0, "The width of a panel, in pixels, or 0 to automatically size the panel."},
        {"PanelCaption", 3, Invoke::Get, {{"Index", "short", false, false, nullptr}}, "BSTR", 0, "The text to display in a panel."},
        {"PanelCaption", 3, Invoke::Put, {{"Index", "short", false, false, nullptr}, {"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The text to display in a panel."},
        {"PanelCount", 4, Invoke::Get, {}, "short", 0, "The number of panels."},
        {"PanelCount", 4, Invoke::Put, {{"NewValue", "short", false, false, nullptr}}, "", 0, "The number of panels."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
        {"SizeGrip", 5, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether or not the size grip will be displayed on the status bar."},
        {"SizeGrip", 5, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether or not the size grip will be displayed on the status bar."},
    }, {}, false},
    {"__KorvelStatus", "{0AEFEF5A-9354-43B8-A603-BF4C5A8E92C7}", {}, {
    }, true},
    {"_KorvelTab", "{8CF8DEF8-43F5-4046-A34C-6646634C5AC1}", {
        {"Tabs", 1, Invoke::Get, {}, "BSTR", 0, "The captions of the tabs, separated by the | character.  Example: Tab 1|Tab 2|Tab 3"},
        {"Tabs", 1, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The captions of the tabs, separated by the | character.  Example: Tab 1|Tab 2|Tab 3"},
        {"DefProp_", 0, Invoke::Get, {}, "BSTR", kHidden, ""},
        {"DefProp_", 0, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", kHidden, ""},
        {"BorderStyle", 2, Invoke::Get, {}, "ktabBorder", 0, "The type of border line to draw at the top of the control."},
        {"BorderStyle", 2, Invoke::Put, {{"NewValue", "ktabBorder", false, false, nullptr}}, "", 0, "The type of border line to draw at the top of the control."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
        {"Font", 3, Invoke::Get, {}, "IFontDisp*", 0, "The font to use on the tab captions."},
        {"Font", 3, Invoke::PutRef, {{"NewValue", "IFontDisp*", false, false, nullptr}}, "", 0, "The font to use on the tab captions."},
    }, {}, false},
    {"__KorvelTab", "{C002C53E-00A7-40C0-9A6E-92A08819DAD5}", {}, {
        {"Change", 1, {{"NewTab", "short", false, false, nullptr}}, ""},
    }, true},
    {"_KorvelAnimation", "{088109D6-22D6-4E73-94C0-BF553F830F05}", {
        {"Filename", 0, Invoke::Get, {}, "BSTR", 0, "The filename of the AVI file to play."},
        {"Filename", 0, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The filename of the AVI file to play."},
        {"IsPlaying", 1, Invoke::Get, {}, "VARIANT_BOOL", 0, "Sets or returns the state of the animation."},
        {"IsPlaying", 1, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Sets or returns the state of the animation."},
        {"Play", 2, Invoke::Method, {}, "", 0, "Starts the animation."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelAnimation", "{1315C6C3-3D13-4C41-859B-397A91AB1E37}", {}, {
    }, true},
    {"_KorvelResize", "{457CD9D8-DB0B-4407-9F95-934BE0A1F509}", {
        {"MinSize", 1, Invoke::Get, {}, "long", 0, "The minimum size of the panels."},
        {"MinSize", 1, Invoke::Put, {{"NewValue", "long", false, false, nullptr}}, "", 0, "The minimum size of the panels."},
        {"BarPos", 0, Invoke::Get, {}, "long", 0, "The position of the resize bar."},
        {"BarPos", 0, Invoke::Put, {{"NewValue", "long", false, false, nullptr}}, "", 0, "The position of the resize bar."},
        {"Orientation", 2, Invoke::Get, {}, "krOrientation", 0, "Determines whether the controls should be stacked vertically or horizontally."},
        {"Orientation", 2, Invoke::Put, {{"NewValue", "krOrientation", false, false, nullptr}}, "", 0, "Determines whether the controls should be stacked vertically or horizontally."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelResize", "{2A450726-3D1E-427F-9D9F-28DF44E34E87}", {}, {
        {"Resize", 1, {}, "Raised when the size of the panels changes.  You may need to call Refresh methods in this event."},
    }, true},
    {"_KorvelBar", "{13290B7C-E573-4543-B0F8-24C2AA547430}", {
        {"Value", 0, Invoke::Get, {}, "short", 0, "An integer between 0-100 indicating the percent of the bar to fill."},
        {"Value", 0, Invoke::Put, {{"NewValue", "short", false, false, nullptr}}, "", 0, "An integer between 0-100 indicating the percent of the bar to fill."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelBar", "{AD301828-E15C-430C-A6B9-F5CAB2D714BC}", {}, {
    }, true},
    {"_KorvelDivider", "{E7C334D9-75EF-44FC-9E27-0DE70A23A862}", {
        {"Caption", 1, Invoke::Get, {}, "BSTR", 0, "The caption to show on the divider, if any."},
        {"Caption", 1, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The caption to show on the divider, if any."},
        {"Default_", 0, Invoke::Get, {}, "BSTR", kHidden, ""},
        {"Default_", 0, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", kHidden, ""},
        {"Font", 2, Invoke::Get, {}, "IFontDisp*", 0, "The font to display the caption in."},
        {"Font", 2, Invoke::PutRef, {{"NewValue", "IFontDisp*", false, false, nullptr}}, "", 0, "The font to display the caption in."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelDivider", "{48D13B1C-9C80-45DE-8782-CD38DA5A97D3}", {}, {
    }, true},
    {"_KorvelBrowseBox", "{CC3C7A45-BDB8-4BB4-AEC0-F7B751BE55F5}", {
        {"Font", 1, Invoke::Get, {}, "IFontDisp*", 0, "The font to use on the control."},
        {"Font", 1, Invoke::PutRef, {{"NewValue", "IFontDisp*", false, false, nullptr}}, "", 0, "The font to use on the control."},
        {"Text", 2, Invoke::Get, {}, "BSTR", 0, "The text in the textbox portion of the control."},
        {"Text", 2, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", 0, "The text in the textbox portion of the control."},
        {"Default_", 0, Invoke::Get, {}, "BSTR", kHidden, ""},
        {"Default_", 0, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", kHidden, ""},
        {"Locked", 3, Invoke::Get, {}, "VARIANT_BOOL", 0, "If True, text cannot be manually edited, but the browse button can still be used."},
        {"Locked", 3, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "If True, text cannot be manually edited, but the browse button can still be used."},
        {"Enabled", 4, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether or not the control responds to the user."},
        {"Enabled", 4, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether or not the control responds to the user."},
        {"IsFolder", 5, Invoke::Get, {}, "VARIANT_BOOL", 0, "Set to True to emulate the KorvelFolder control."},
        {"IsFolder", 5, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Set to True to emulate the KorvelFolder control."},
        {"Folder", 6, Invoke::Get, {}, "BSTR", kNonBrowsable, "Returns the Text property if it contains a real folder name, or an empty string if it does not."},
        {"Folder", 6, Invoke::Put, {{"NewValue", "BSTR", false, false, nullptr}}, "", kNonBrowsable, "Returns the Text property if it contains a real folder name, or an empty string if it does not."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelBrowseBox", "{5F4C920A-634B-4667-8470-A63958800530}", {}, {
        {"Click", -600, {{"Text", "BSTR", true, false, nullptr}}, "Raised when the browse button is clicked."},
        {"Change", 1, {}, "Raised when the text in the textbox changes."},
    }, true},
    {"_KorvelMiniSlider", "{2E0EAED7-6AD8-443D-AB5F-C9EF18A7A355}", {
        {"Value", 0, Invoke::Get, {}, "long", 0, "The value of the control."},
        {"Value", 0, Invoke::Put, {{"NewValue", "long", false, false, nullptr}}, "", 0, "The value of the control."},
        {"Min", 1, Invoke::Get, {}, "long", 0, "The minimum value for the control."},
        {"Min", 1, Invoke::Put, {{"NewValue", "long", false, false, nullptr}}, "", 0, "The minimum value for the control."},
        {"Max", 2, Invoke::Get, {}, "long", 0, "The maximum value for the control."},
        {"Max", 2, Invoke::Put, {{"NewValue", "long", false, false, nullptr}}, "", 0, "The maximum value for the control."},
        {"ForeColor", 3, Invoke::Get, {}, "OLE_COLOR", 0, "The foreground (bar) color for the control."},
        {"ForeColor", 3, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "The foreground (bar) color for the control."},
        {"BackColor", 4, Invoke::Get, {}, "OLE_COLOR", 0, "The background color of the control."},
        {"BackColor", 4, Invoke::Put, {{"NewValue", "OLE_COLOR", false, false, nullptr}}, "", 0, "The background color of the control."},
        {"Enabled", 5, Invoke::Get, {}, "VARIANT_BOOL", 0, "Determines whether the control responds to user input."},
        {"Enabled", 5, Invoke::Put, {{"NewValue", "VARIANT_BOOL", false, false, nullptr}}, "", 0, "Determines whether the control responds to user input."},
        {"AboutBox", -552, Invoke::Method, {}, "", 0, "Shows the About... dialog box."},
    }, {}, false},
    {"__KorvelMiniSlider", "{03D9E22C-83FA-40C5-9F80-84D7E1F77355}", {}, {
        {"Click", -600, {{"NewValue", "long", false, false, nullptr}}, "Raised when the value is changed by the user."},
        {"Change", 1, {{"NewValue", "long", false, false, nullptr}}, "Raises when the value is changed for any reason."},
    }, true},
    {"_ktButtons", "{04F21B6E-1D1A-4C19-AC6D-19C99F9810CD}", {
        {"EnableControls", 1, Invoke::Method, {}, "", 0, ""},
    }, {}, false},
    {"_ksPanels", "{E83AF8AF-B03D-4337-B453-AF31952E31B5}", {
        {"Add", 1, Invoke::Method, {}, "", 0, ""},
        {"Remove", 2, Invoke::Method, {}, "", 0, ""},
        {"Left", 3, Invoke::Method, {}, "", 0, ""},
        {"Right", 4, Invoke::Method, {}, "", 0, ""},
        {"UpdateControls", 5, Invoke::Method, {}, "", 0, ""},
    }, {}, false},
    {"_kdCustom", "{8EFA70A3-4DFE-4F17-B36A-3615A7DBE9D0}", {
    }, {}, false},
    {"_krControls", "{E19341A7-285F-4E98-BD25-29712831EE1A}", {
    }, {}, false},
};

inline const std::vector<Enumeration> kEnumerations = {
    {"ktStyle", {
        {"ktButton", 0, "Button"},
        {"ktCheck", 1, "Check"},
        {"ktSeparator", 2, "Separator"},
        {"ktPlaceholder", 3, "Placeholder"},
    }},
    {"ktBorder", {
        {"ktNoBorder", 0, "No Border"},
        {"ktRaised", 1, "Raised"},
        {"ktBar", 2, "Bar"},
        {"ktInternetExplorer", 3, "Internet Explorer"},
    }},
    {"ktabBorder", {
        {"ktabNone", 0, "None"},
        {"ktabBevel", 1, "Bevel"},
        {"ktabGroove", 2, "Groove"},
    }},
    {"FrameBorderType", {
        {"koNone", 0, "None"},
        {"koSingleBlack", 1, "Single black"},
        {"koSingleInset", 2, "Single inset"},
        {"koSingleBevel", 3, "Single bevel"},
        {"koDoubleInset", 4, "Double inset"},
        {"koDoubleBevel", 5, "Double bevel"},
        {"koGroove", 6, "Groove"},
        {"koBump", 7, "Bump"},
    }},
    {"krOrientation", {
        {"krHorizontal", 0, "Horizontal"},
        {"krVertical", 1, "Vertical"},
    }},
};

}  // namespace korvel::typelib_expect
