' The mini slider driven by name from a script, its events received as Sub Name_Event.
Dim log
log = ""
Sub Slider_Change(NewValue)
  log = log & "Change(" & NewValue & ")"
End Sub
Sub Slider_Click(NewValue)
  log = log & "Click(" & NewValue & ")"
End Sub
Sub Expect(what, got, want)
  If CStr(got) <> CStr(want) Then Host.Echo "FAIL " & what & ": got " & got & ", want " & want
End Sub

Expect "new Min", Slider.Min, 0
Expect "new Max", Slider.Max, 100
Slider.Max = 10
Slider.Value = 15
Expect "Value beyond Max", Slider.Value, 10
Expect "events", log, "Change(10)"
log = ""
Slider.Value = 10
Expect "setting the same value again", log, "Change(10)"
Expect "the default member is Value", Slider, 10
log = ""
Slider.Min = 20
Expect "Max follows Min", Slider.Max, 20
Expect "Value follows Min", Slider.Value, 20
Expect "no event when Min moves Max", log, ""

' Created by the script itself, with no site: it behaves as at run time (a bar at
' design time would stay at 100).
Dim other
Set other = CreateObject("KorvelUI99.KorvelBar")
other.Value = 30
Expect "a bar created by CreateObject is at run time", other.Value, 30

' A type that does not convert is a type mismatch (error 13).
On Error Resume Next
Slider.Value = "abc"
Expect "type mismatch", Err.Number, 13
On Error GoTo 0
Host.Echo "END OF SCRIPT"
