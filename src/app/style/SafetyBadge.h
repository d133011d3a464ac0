#pragma once

#include "Theme.h"
#include "scan/CleanRule.h"

#include <QWidget>

namespace lumabroom {

// The level of safety as a small tinted capsule: green, orange or gray.
class SafetyBadge : public QWidget {
public:
    explicit SafetyBadge(SafetyLevel safety, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    static QColor color(SafetyLevel, const Theme&);

protected:
    void paintEvent(QPaintEvent*) override;
    void changeEvent(QEvent*) override;

private:
    QString text() const;
    SafetyLevel safety_;
};

} // namespace lumabroom
