// The ANSI code page through the Win32 API, kept free of Qt so it can be
// syntax-checked with the MinGW cross compiler.
#include <windows.h>

int windowsAnsiCodePage()
{
    return static_cast<int>(GetACP());
}
