#pragma once

#include <QString>
#include <functional>

/// Box styles: the sum of an icon, a set of buttons and flags.
namespace BoxStyle {
constexpr int OkOnly = 0;
constexpr int OkCancel = 1;
constexpr int YesNoCancel = 3;
constexpr int YesNo = 4;
constexpr int Critical = 16;
constexpr int Question = 32;
constexpr int Exclamation = 48;
constexpr int Information = 64;
constexpr int DefaultButton2 = 256;
constexpr int SystemModal = 4096;
} // namespace BoxStyle

/// Button codes that MsgBox returns.
namespace BoxButton {
constexpr int Ok = 1;
constexpr int Cancel = 2;
constexpr int Yes = 6;
constexpr int No = 7;
} // namespace BoxButton

/// One message box as the caller asked for it: its text with the original line breaks (CR or CR
/// LF).
struct MessageBoxRequest
{
    QString text;
    int style = 0;
    QString title;
};

/// Shows a modal message box and returns the code of the button pressed. Esc and the window's close
/// button answer Cancel where there is one, else No, else OK.
int MsgBox(const QString &text, int style, const QString &title);

/// Test seam: while set, the handler answers in place of every box. An empty handler ends that.
void SetMsgBoxHandler(std::function<int(const MessageBoxRequest &)> handler);
