' The script host itself: output, objects created by name, arithmetic and strings.
Dim d
Set d = CreateObject("Scripting.Dictionary")
d.Add "a", 1
If d.Count <> 1 Then Host.Echo "FAIL dictionary count " & d.Count
Host.Echo "count " & d.Count & ", " & UCase("ok")
Host.Echo "END OF SCRIPT"
