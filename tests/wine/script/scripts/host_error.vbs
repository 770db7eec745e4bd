' A run-time error stops the script and is reported with its line.
Host.Echo "before"
Dim x
x = 1 / 0
Host.Echo "END OF SCRIPT"
