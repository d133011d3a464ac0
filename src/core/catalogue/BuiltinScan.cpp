#include "catalogue/BuiltinScan.h"

#include "catalogue/ScanRoutes.h"

namespace lumabroom::CacheScanner {

ScanStream scan(std::vector<CleanRule> rules) { return scan(std::move(rules), ScanRoutes::builtin()); }
RuleScanResult scanRule(const CleanRule& rule) { return scanRule(rule, ScanRoutes::builtin()); }

} // namespace lumabroom::CacheScanner
