' Quit ends the script with its code; nothing after it runs.
Host.Echo "before"
Host.Quit 7
Host.Echo "END OF SCRIPT"
