#pragma once

#include <QDialog>

namespace lumabroom {

class AppModel;

// Asks how to clean the selection: to the trash (the default), deleted at once, or not at all.
// It deletes itself when closed.
class CleanDialog : public QDialog {
public:
    CleanDialog(AppModel& model, QWidget* parent);
};

} // namespace lumabroom
