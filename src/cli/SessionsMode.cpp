#include "SessionsMode.h"

#include "Columns.h"

#include "agents/AgentSessions.h"
#include "text/Formatting.h"
#include "text/Strings.h"

#include <nlohmann/json.hpp>

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
        auto list = nlohmann::ordered_json::array();
        for (const auto& s : sessions)
            list.push_back({{"path", s.url.string()}, {"size", s.size}, {"label", s.label ? s.label->text() : ""}});
        out << nlohmann::ordered_json{{"sessions", std::move(list)}}.dump(-1, ' ', false,
                                                                          nlohmann::json::error_handler_t::replace)
            << "\n";
        return 0;
    }
    const char* name = agent == Agent::claude ? "Claude Code" : "Codex";
    if (sessions.empty()) {
        out << "No " << name << " session files.\n";
        return 0;
    }
    out << "Largest " << name << " sessions\n";
    std::int64_t total = 0;
    for (const auto& s : sessions) {
        out << "  " << Columns::rightAligned(Formatting::bytes(s.size), 10) << "  "
            << Strings::quotedForTerminal(s.label ? s.label->text() : s.url.filename().string()) << "\n"
            << "  " << std::string(12, ' ') << Strings::quotedForTerminal(s.url.string()) << "\n";
        total += s.size;
    }
    out << "Total " << Formatting::bytes(total) << " in " << sessions.size() << " files\n";
    return 0;
}

} // namespace lumabroom::SessionsMode
