' KorvelToolbar from VBScript by name, at run time: the script host places it as a
' new instance (a new toolbar starts with the Internet Explorer border, 3) without a
' container, so nothing of its design-time side changes.
Sub Expect(ok, what)
  If Not ok Then Host.Echo "FAIL " & what
End Sub

Expect Toolbar.BorderStyle = 3, "BorderStyle of a new toolbar is 3, got " & Toolbar.BorderStyle
Toolbar.BorderStyle = 2
Expect Toolbar.BorderStyle = 3, "BorderStyle = 2 at run time is ignored, got " & Toolbar.BorderStyle
Expect Toolbar.MaskColor = &HFF00FF, "MaskColor is light magenta, got " & Hex(Toolbar.MaskColor)
Expect Toolbar.UseMaskColor = True, "UseMaskColor is True"
Expect Toolbar.Picture Is Nothing, "no Picture"

' Keyed members of a key that is not there: False, 0, assignments ignored.
Expect Toolbar.Enabled("A") = False, "Enabled(""A"") of an empty toolbar is False"
' The default member through a variable (Wine's engine refuses a call on the named item itself).
Dim t
Set t = Toolbar
Expect t("A") = False, "the default member Value(""A"") is False"
Toolbar.Value("A") = True
Expect Toolbar.Value("A") = False, "Value(""A"") = True on no button changes nothing"
Expect Toolbar.Style("A") = 0, "Style(""A"") is 0"
Expect Toolbar.ToolTipText("A") = False, "ToolTipText(""A"") of no button reads False"

' Customize does nothing at run time: the count and arrays stay as given.
Dim n, keys, tips, styles, en, vals, widths
n = 3
Toolbar.Customize False, n, keys, tips, styles, en, vals, widths
Expect n = 3 And IsEmpty(keys) And IsEmpty(widths), "Customize at run time leaves its arguments, got n = " & n

' Missing arguments are a run-time error.
On Error Resume Next
Toolbar.Customize False
Expect Err.Number <> 0, "Customize without its arrays raises an error"
Err.Clear
On Error GoTo 0

Dim f
Set f = Toolbar.GetDefaultFont()
Expect Len(f.Name) > 0, "GetDefaultFont gives a font with a name"
Dim g
Set g = Toolbar.GetDefaultFont()
Expect Not (f Is g), "each GetDefaultFont is a new font object"

Sub Toolbar_Click(Key, X, Y)
  Host.Echo "FAIL no click without input: " & Key
End Sub

Host.Echo "END OF SCRIPT"
