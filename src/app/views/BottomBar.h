#pragma once

#include <QFrame>
#include <QPointer>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace lumabroom {

class AppModel;
class CleanDialog;
class DiskStatusSegment;

// The floating bar below the panels: the disk, the last action's summary with Undo while the model
// can take back a clean, the selection and the Clean button with its dialog. Its pieces stand in
// one row, each filled by its own refresh.
class BottomBar : public QFrame {
public:
    BottomBar(AppModel& model, bool light, QWidget* parent);

    void refresh();
    // Opens the clean dialog, unless one is up or there is nothing to clean now.
    void askToClean();

    QPushButton* cleanButton() const { return cleanButton_; }
    QPushButton* undoButton() const { return undoButton_; }
    // Puts the bar's controls next in the tab chain after `previous`.
    void followInTabs(QWidget* previous);
    // The clean dialog while it is up.
    QDialog* cleanDialog() const;

private:
    void addDiskSegment(QHBoxLayout& row);
    void addSummary(QHBoxLayout& row);
    void addCleanButton(QHBoxLayout& row);
    void refreshDisk();
    void refreshSummary();
    void refreshSelection();

    AppModel& model_;
    bool light_;
    DiskStatusSegment* diskSegment_ = nullptr;
    QLabel* summaryMark_ = nullptr;
    QLabel* summaryLabel_ = nullptr;
    QPushButton* undoButton_ = nullptr;
    QLabel* selectionLabel_ = nullptr;
    QPushButton* cleanButton_ = nullptr;
    QPointer<CleanDialog> cleanDialog_;
};

} // namespace lumabroom
