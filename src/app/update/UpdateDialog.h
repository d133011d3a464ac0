#pragma once

#include "update/Appcast.h"

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

namespace lumabroom {

class Updater;

// Offers a newer release with its notes, then downloads it with a progress bar. The verified file
// goes on through the updater's hand-over and the dialog closes; a failure shows its sentence and
// the download can be tried again. Closing the dialog leaves a running download to finish.
class UpdateDialog : public QDialog {
    Q_OBJECT

public:
    UpdateDialog(Updater& updater, AppcastItem item, QWidget* parent = nullptr);

private:
    void startDownload();

    Updater& updater_;
    AppcastItem item_;
    QPushButton* downloadButton_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QLabel* status_ = nullptr;
};

} // namespace lumabroom
