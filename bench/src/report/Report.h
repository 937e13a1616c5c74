#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Row.h"

namespace bench {

/// All rows that a folder of parts holds, in the order of the report. Parts that were not measured are left out; parts
/// that are not known are an error (std::runtime_error).
[[nodiscard]] std::vector<Row> collectRows(const std::filesystem::path& parts);

/// Whether the folder holds every part that any computer can measure, so that documents made of them leave nothing out.
[[nodiscard]] bool isComplete(const std::filesystem::path& parts);

/// The rows as a table for a terminal.
[[nodiscard]] std::string formatTable(const std::vector<Row>& rows);

/// The rows as Markdown tables, one for each group, headed by what the group compares.
[[nodiscard]] std::string formatMarkdown(const std::vector<Row>& rows);

/// One sentence with the two figures that the README shows. Throws std::runtime_error when one was not measured.
[[nodiscard]] std::string formatHeadline(const std::vector<Row>& rows);

/// `{"name": {"floor_ns": …, "bridge_ns": …, "ratio": …, "target": …}}`; the target is null where there is none,
/// figures in other units end in `_bytes` or `_instructions`, and `bare_ns` stands where the floor was also
/// measured with everything it needs kept.
[[nodiscard]] std::string formatJson(const std::vector<Row>& rows);

/// Draws the charts into the folder; a chart without rows is left as it is.
void writeCharts(const std::filesystem::path& folder, const std::vector<Row>& rows);

/// Puts the text between the two marks of the document that stand for measured figures. Throws std::runtime_error when
/// the document has no such marks.
void replaceFigures(const std::filesystem::path& document, const std::string& text);

}  // namespace bench
