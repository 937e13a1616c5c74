#include "base/Problem.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "base/DisplayText.h"
#include "base/MemoryError.h"
#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"

namespace jstore {

namespace provider = foundation::storage::provider;
using provider::ErrorCode;
using provider::StorageIRI;

namespace {

constexpr std::array<std::pair<ErrorCode, std::string_view>, 13> Meanings{{
    {ErrorCode::Unknown, "the back end gives no reason"},
    {ErrorCode::NotFound, "nothing is there"},
    {ErrorCode::AlreadyExists, "something is there already"},
    {ErrorCode::AccessDenied, "the back end refuses access"},
    {ErrorCode::NotAFile, "it is not a file"},
    {ErrorCode::NotAFolder, "it is not a folder"},
    {ErrorCode::FolderNotEmpty, "the folder is not empty"},
    {ErrorCode::Cancelled, "it was cancelled"},
    {ErrorCode::NotSupported, "the back end does not support this"},
    {ErrorCode::InvalidLocation, "the location is not valid here"},
    {ErrorCode::StorageFull, "no space is left"},
    {ErrorCode::InUse, "it is in use"},
    {ErrorCode::Unavailable, "the back end cannot be reached"},
}};

/// Reasons that only repeat their code, in lower case.
constexpr std::array<std::pair<std::string_view, std::string_view>, 14> Repetitions{{
    {"NotFound", "does not exist"},
    {"NotFound", "not found"},
    {"NotFound", "no such file or directory"},
    {"AlreadyExists", "exists"},
    {"AlreadyExists", "already exists"},
    {"AlreadyExists", "file exists"},
    {"AccessDenied", "access denied"},
    {"NotAFile", "is a folder"},
    {"NotAFile", "is a directory"},
    {"NotAFolder", "is a file"},
    {"NotAFolder", "not a directory"},
    {"FolderNotEmpty", "is not empty"},
    {"FolderNotEmpty", "directory not empty"},
    {"NotSupported", "not supported"},
}};

bool repeatsItsCode(const std::string& code, std::string_view reason) {
    const auto same = [](char left, char right) {
        return left == (right >= 'A' && right <= 'Z' ? static_cast<char>(right - 'A' + 'a') : right);
    };
    return std::any_of(Repetitions.begin(), Repetitions.end(), [&](const auto& row) {
        return row.first == code &&
               std::equal(row.second.begin(), row.second.end(), reason.begin(), reason.end(), same);
    });
}

bool sameLocation(const StorageIRI& left, const StorageIRI& right) {
    // The error's location went through Java in its ASCII form; normalizing removes the difference.
    return left == right || left.normalized() == right.normalized();
}

}  // namespace

CommandError::CommandError(Problem problem) : std::runtime_error(errorLine(problem)), m_problem(std::move(problem)) {}

CommandError usageError(std::string text) {
    return CommandError({.code = "Usage", .location = {}, .text = std::move(text), .exitCode = ExitCode::Usage});
}

CommandError refusal(const Location& location, foundation::storage::provider::ErrorCode code, std::string hint) {
    return CommandError({std::string(toString(code)), location.text(), std::move(hint), exitCodeOf(code)});
}

std::string errorLine(const Problem& problem) {
    if (problem.location.empty()) {
        return fmt::format("jstore: {}", oneLine(problem.text));
    }
    const std::string more = oneLine(problem.text.empty() ? problem.reason : problem.text);
    return fmt::format("jstore: {}: {}{}{}", problem.code, printable(problem.location), more.empty() ? "" : ": ", more);
}

void addReason(Problem& problem, std::string_view words) {
    constexpr std::size_t longest = 300;
    std::string reason = shortened(oneLine(words), longest);
    if (!repeatsItsCode(problem.code, reason)) {
        problem.reason = std::move(reason);
    }
}

std::string messageOf(const Problem& problem) {
    if (!problem.text.empty() || !problem.reason.empty()) {
        return oneLine(problem.text.empty() ? problem.reason : problem.text);
    }
    for (const auto& [code, meaning] : Meanings) {
        if (toString(code) == problem.code) {
            return std::string(meaning);
        }
    }
    return problem.code;
}

Problem describe(const std::exception& error, const Location& subject) {
    const auto* reported = dynamic_cast<const provider::Exception*>(&error);
    if (reported == nullptr) {
        if (const std::optional<std::string> hint = memoryHint(error)) {
            return {MemoryCode, subject.text(), *hint, ExitCode::Failed};
        }
        return {"Internal", subject.text(), error.what(), ExitCode::Failed};
    }
    const bool elsewhere = !reported->location().empty() && !sameLocation(reported->location(), subject.iri());
    return {std::string(toString(reported->code())), elsewhere ? Location(reported->location()).text() : subject.text(),
            std::string(), exitCodeOf(reported->code())};
}

}  // namespace jstore
