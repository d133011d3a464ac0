#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom::UpdateTexts {

// The sentences of the updater, as keys of the language tables (context "Updater").
inline constexpr std::string_view upToDate = "当前版本 %1 已是最新。";
inline constexpr std::string_view invalidFeedAddress = "更新地址无效。";
inline constexpr std::string_view unreachable = "无法连接更新服务器。";
inline constexpr std::string_view httpError = "更新服务器返回了错误 %1。";
inline constexpr std::string_view tooManyRedirects = "更新服务器的重定向过多,已停止。";
inline constexpr std::string_view timedOut = "更新服务器没有响应,已超时。";
inline constexpr std::string_view malformedFeed = "更新信息格式有误,无法读取。";
inline constexpr std::string_view wrongLength = "下载的文件大小不符,已删除。";
inline constexpr std::string_view badSignature = "下载的文件签名无效,已删除。";
inline constexpr std::string_view notSaved = "无法保存下载的文件。";

// The dialog that offers a release.
inline constexpr std::string_view dialogTitle = "软件更新";
inline constexpr std::string_view available = "新版本 %1 可用";
inline constexpr std::string_view runningVersion = "你现在使用的是 %1。";
inline constexpr std::string_view releaseNotes = "更新说明";
inline constexpr std::string_view downloadButton = "下载";
inline constexpr std::string_view laterButton = "以后再说";
inline constexpr std::string_view downloading = "正在下载…";

inline constexpr std::array all{upToDate,    invalidFeedAddress, unreachable,    httpError,    tooManyRedirects,
                                timedOut,    malformedFeed,      wrongLength,    badSignature, notSaved,
                                dialogTitle, available,          runningVersion, releaseNotes, downloadButton,
                                laterButton, downloading};

// The display text of a key of this table in the current language, "%1" and on filled from `values`.
std::string text(std::string_view key, const std::vector<std::string>& values = {});

} // namespace lumabroom::UpdateTexts
