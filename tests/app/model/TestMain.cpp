// The model posts its outcomes as events: every test runs with an application object and waits by
// processing events.

#include "text/Localization.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    lumabroom::Localization::setLanguageForThisRun(lumabroom::AppLanguage::chinese);
    return RUN_ALL_TESTS();
}
