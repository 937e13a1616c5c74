#include "Row.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>

namespace bench {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array Units = {Unit::Nanoseconds, Unit::Bytes, Unit::Instructions};

Unit toUnit(const std::string& name) {
    const auto* unit = std::find_if(Units.begin(), Units.end(), [&name](Unit one) { return unitName(one) == name; });
    if (unit == Units.end()) {
        throw std::runtime_error("no unit: " + name);
    }
    return *unit;
}

Json toJson(const std::optional<double>& figure) { return figure ? Json(*figure) : Json(nullptr); }

std::optional<double> toFigure(const Json& json) {
    return json.is_null() ? std::nullopt : std::optional(json.get<double>());
}

Json toJson(const Row& row) {
    return {{"name", row.name},
            {"group", row.group},
            {"unit", unitName(row.unit)},
            {"floor", row.floor},
            {"bridge", row.bridge},
            {"bare", toJson(row.bare)},
            {"target", toJson(row.target)},
            {"ratio_low", row.ratioLow},
            {"ratio_high", row.ratioHigh}};
}

Row toRow(const Json& json) {
    Row row;
    row.name = json.at("name");
    row.group = json.at("group");
    row.unit = toUnit(json.at("unit"));
    row.floor = json.at("floor");
    row.bridge = json.at("bridge");
    row.bare = toFigure(json.at("bare"));
    row.target = toFigure(json.at("target"));
    row.ratioLow = json.at("ratio_low");
    row.ratioHigh = json.at("ratio_high");
    return row;
}

}  // namespace

const char* unitName(Unit unit) {
    switch (unit) {
        case Unit::Bytes:
            return "bytes";
        case Unit::Instructions:
            return "instructions";
        default:
            return "ns";
    }
}

void writeRows(const std::filesystem::path& file, const std::vector<Row>& rows) {
    Json json = Json::array();
    for (const Row& row : rows) {
        json.push_back(toJson(row));
    }
    std::ofstream out(file);
    out << json.dump(2) << '\n';
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

std::vector<Row> readRows(const std::filesystem::path& file) {
    std::ifstream in(file);
    if (!in) {
        throw std::runtime_error("cannot read " + file.string());
    }
    std::vector<Row> rows;
    for (const Json& json : Json::parse(in)) {
        rows.push_back(toRow(json));
    }
    return rows;
}

}  // namespace bench
