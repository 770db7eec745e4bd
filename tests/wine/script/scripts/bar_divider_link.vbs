' The bar, the divider and the link driven by name from a script.
Sub Expect(what, got, want)
  If CStr(got) <> CStr(want) Then Host.Echo "FAIL " & what & ": got " & got & ", want " & want
End Sub

Bar.Value = 150
Expect "bar Value 150", Bar.Value, 100
Bar.Value = -5
Expect "bar Value -5, read through the default member", Bar, 0

Divider.Default_ = "Options"
Expect "the hidden default member sets Caption", Divider.Caption, "Options"
Divider.Caption = ""
Expect "divider Caption", Divider, ""

Link.URL = "  MAILTO:sales  "
Expect "link URL trimmed", Link.URL, "MAILTO:sales"
Link.Caption = "Write to us"
Expect "link Caption", Link.Caption, "Write to us"
Link.Enabled = False
Expect "link Enabled", Link.Enabled, False
Link.HoverColor = &HFF&
Expect "link HoverColor", Link.HoverColor, 255

Dim names, n
For Each n In Array("KorvelUI99.KorvelToolbar", "KorvelUI99.KorvelLink", "KorvelUI99.KorvelDivider", "KorvelUI99.KorvelBar", "KorvelUI99.KorvelMiniSlider")
  Dim o
  Set o = CreateObject(n)
  If Not IsObject(o) Then Host.Echo "FAIL CreateObject " & n
  Set o = Nothing
Next
Host.Echo "END OF SCRIPT"
