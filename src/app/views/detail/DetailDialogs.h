#pragma once

#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

namespace lumabroom::DetailDialogs {

// Opens a window-modal confirmation and returns at once. "取消" is the default and the Escape
// button, so neither Return nor Escape destroys anything; `onConfirm` runs only for the
// destructive button, `onDismiss` for every other way the box closes. The box deletes itself.
QMessageBox* confirm(QWidget* parent, const QString& title, const QString& message, const QString& destructive,
                     std::function<void()> onConfirm, std::function<void()> onDismiss);

} // namespace lumabroom::DetailDialogs
