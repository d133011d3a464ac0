#include "update/UpdateDialog.h"

#include "update/UpdateTexts.h"
#include "update/Updater.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace lumabroom {

namespace {

QString text(std::string_view key) { return QString::fromStdString(UpdateTexts::text(key)); }

QString text(std::string_view key, const QString& value) {
    return QString::fromStdString(UpdateTexts::text(key, {value.toStdString()}));
}

} // namespace

UpdateDialog::UpdateDialog(Updater& updater, AppcastItem item, QWidget* parent)
    : QDialog(parent),
      updater_(updater),
      item_(std::move(item)) {
    setWindowTitle(text(UpdateTexts::dialogTitle));
    setMinimumWidth(480);

    auto* headline = new QLabel(text(UpdateTexts::available, item_.version), this);
    QFont bigger = headline->font();
    bigger.setBold(true);
    bigger.setPointSizeF(bigger.pointSizeF() * 1.2);
    headline->setFont(bigger);
    auto* running = new QLabel(text(UpdateTexts::runningVersion, updater.currentVersion()), this);

    auto* notes = new QTextBrowser(this);
    notes->setAccessibleName(text(UpdateTexts::releaseNotes));
    notes->setOpenExternalLinks(true);
    notes->setHtml(item_.releaseNotes);
    notes->setVisible(!item_.releaseNotes.isEmpty());

    progress_ = new QProgressBar(this);
    progress_->setAccessibleName(text(UpdateTexts::downloading));
    progress_->setTextVisible(false);
    progress_->hide();
    status_ = new QLabel(this);
    status_->setWordWrap(true);
    status_->hide();

    auto* buttons = new QDialogButtonBox(this);
    downloadButton_ = buttons->addButton(text(UpdateTexts::downloadButton), QDialogButtonBox::AcceptRole);
    downloadButton_->setDefault(true);
    QPushButton* later = buttons->addButton(text(UpdateTexts::laterButton), QDialogButtonBox::RejectRole);
    connect(later, &QPushButton::clicked, this, &QDialog::reject);
    connect(downloadButton_, &QPushButton::clicked, this, &UpdateDialog::startDownload);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(headline);
    layout->addWidget(running);
    layout->addWidget(notes, 1);
    layout->addWidget(progress_);
    layout->addWidget(status_);
    layout->addWidget(buttons);

    connect(&updater_, &Updater::downloadProgress, this, [this](qint64 received, qint64 total) {
        // An unknown total shows a busy bar; the range is scaled so that large files fit an int.
        const qint64 scale = total > 1'000'000'000 ? 1024 : 1;
        progress_->setRange(0, total > 0 ? static_cast<int>(total / scale) : 0);
        progress_->setValue(total > 0 ? static_cast<int>(received / scale) : 0);
    });
    connect(&updater_, &Updater::downloadFinished, this, [this] {
        progress_->hide();
        accept();
    });
    connect(&updater_, &Updater::downloadFailed, this, [this](const QString& sentence) {
        progress_->hide();
        status_->setText(sentence);
        status_->show();
        downloadButton_->setEnabled(true);
    });
}

void UpdateDialog::startDownload() {
    if (!updater_.canCheckForUpdates()) return;
    downloadButton_->setEnabled(false);
    status_->hide();
    progress_->setRange(0, 0);
    progress_->show();
    updater_.download(item_);
}

} // namespace lumabroom
