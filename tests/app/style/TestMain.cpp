// Widgets need an application object; the settings live in a folder of the test's own.

#include "host/Settings.h"
#include "text/Localization.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    QTemporaryDir settings;
    lumabroom::Settings::useFolder(settings.path().toStdString());
    lumabroom::Localization::setLanguageForThisRun(lumabroom::AppLanguage::chinese);
    return RUN_ALL_TESTS();
}
