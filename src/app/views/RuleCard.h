#pragma once

#include "model/VisibleGroup.h"
#include "scan/RuleScanResult.h"

#include <QPushButton>

class QHBoxLayout;
class QLabel;
class QToolButton;

namespace lumabroom {

class AppModel;

// A rule's row under its open group: picture, name with the paths in its tooltip, safety badge,
// size and the checkbox of the whole rule. A press opens the rule.
class RuleCard : public QPushButton {
public:
    RuleCard(AppModel& model, const RuleScanResult& result, bool light, QWidget* parent = nullptr);

    // The size and selection of `result`, the same rule.
    void setResult(const RuleScanResult& result, RuleSelection selection);

private:
    void addCheckbox(QHBoxLayout& row, AppModel& model, const std::string& ruleID);

    bool light_;
    QLabel* name_;
    QLabel* size_;
    QToolButton* checkbox_ = nullptr;
};

} // namespace lumabroom
