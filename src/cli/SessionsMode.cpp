#include "SessionsMode.h"

#include "Output.h"
#include "Texts.h"

#include "agents/AgentSessions.h"
#include "host/Paths.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "text/Strings.h"

#include <ostream>

namespace lumabroom::SessionsMode {

std::optional<Agent> agentFromName(std::string_view name) {
    if (name == "claude") return Agent::claude;
    if (name == "codex") return Agent::codex;
    return std::nullopt;
}

int run(Agent agent, std::size_t limit, bool json, std::ostream& out) {
    const auto sessions = agent == Agent::claude ? AgentSessions::largestClaudeSessions(limit)
                                                 : AgentSessions::largestCodexSessions(limit);
    if (json) {
        auto list = Output::Json::array();
        for (const auto& s : sessions)
            list.push_back({{"path", s.url.string()}, {"size", s.size}, {"label", s.label ? s.label->text() : ""}});
        Output::writeJsonLine(out, Output::Json{{"sessions", std::move(list)}});
        return 0;
    }
    const std::string name = agent == Agent::claude ? "Claude Code" : "Codex";
    if (sessions.empty()) {
        out << Localization::formatted(Texts::sessionsNone, {name}) << "\n";
        return 0;
    }
    const std::string home = Paths::homeDirectory();
    std::vector<Output::Row> rows;
    std::int64_t total = 0;
    for (const auto& s : sessions) {
        rows.push_back({{Formatting::bytes(s.size),
                         Strings::quotedForTerminal(s.label ? s.label->text() : s.url.filename().string())}});
        rows.push_back({{"", Output::displayPath(s.url, home)}});
        total += s.size;
    }
    out << Localization::formatted(Texts::sessionsLargest, {name}) << "\n"
        << Output::table({Output::sizeColumn(), {}}, rows)
        << Localization::counted(Texts::sessionsTotal, static_cast<std::int64_t>(sessions.size()),
                                 {Formatting::bytes(total)})
        << "\n";
    return 0;
}

} // namespace lumabroom::SessionsMode
