#pragma once

#include "text/Localization.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace lumabroom::test {

// A widget test program's application object, made once in Chinese, the keys' own language.
class WidgetApplication : public ::testing::Environment {
public:
    void SetUp() override {
        Localization::setLanguageForThisRun(AppLanguage::chinese);
        app = std::make_unique<QApplication>(argc, argv);
    }
    void TearDown() override { app.reset(); }

private:
    int argc = 1;
    char name[8] = "widgets";
    char* argv[2] = {name, nullptr};
    std::unique_ptr<QApplication> app;
};

} // namespace lumabroom::test
