// The widget tests of this program share one application object.

#include "support/WidgetApplication.h"

namespace {
const auto* const environment = ::testing::AddGlobalTestEnvironment(new lumabroom::test::WidgetApplication);
} // namespace
