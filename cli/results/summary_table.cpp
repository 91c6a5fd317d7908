// SPDX-License-Identifier: MIT
#include "results/summary_table.h"

#include <algorithm>
#include <cstdio>

#include "terminal/terminal.h"
#include "terminal/text_width.h"

namespace cli {
namespace {

using Row = std::vector<std::string>;

/// Of the columns behind the name, the most important first.
const Row kHeading = {"model", "result", "warnings", "triangles", "seconds", "points", "bytes"};
constexpr size_t kLeastColumns = 3, kGap = 2, kNarrowestName = 20;

Row RowOf(const std::string& name, const std::string& outcome, const Totals& totals, double seconds) {
  char time[32];
  std::snprintf(time, sizeof time, "%.2f", seconds);
  return {name,
          outcome,
          std::to_string(totals.warnings),
          std::to_string(totals.triangles),
          time,
          std::to_string(totals.vertices),
          std::to_string(totals.packageBytes)};
}

std::vector<size_t> WidthsOf(const std::vector<Row>& rows) {
  std::vector<size_t> widths(kHeading.size());
  for (const Row& row : rows) {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], DisplayWidth(row[i]));
  }
  return widths;
}

/// Makes `widths` fit into `columns`.
void Narrow(size_t columns, std::vector<size_t>& widths) {
  const auto others = [&] {
    size_t sum = 1;  // a terminal may turn the line at its last column
    for (size_t i = 1; i < widths.size(); ++i) sum += kGap + widths[i];
    return sum;
  };
  const size_t name = std::min(widths[0], kNarrowestName);
  while (widths.size() > kLeastColumns && others() + name > columns) widths.pop_back();
  widths[0] = std::min(widths[0], columns > others() + 5 ? columns - others() : 5);
}

}  // namespace

std::string SummaryTable(const std::vector<ModelResult>& results, double seconds, size_t columns) {
  std::vector<Row> rows{kHeading};
  for (const ModelResult& result : results) {
    const std::string outcome = result.code != 0   ? "code " + std::to_string(result.code)
                                : result.isCurrent ? "current"
                                                   : "ok";
    rows.push_back(RowOf(Printable(result.model), outcome, Sum({result}), result.seconds));
  }
  const Totals totals = Sum(results);
  rows.push_back(
      RowOf("all", std::to_string(totals.succeeded) + "/" + std::to_string(results.size()), totals, seconds));
  std::vector<size_t> widths = WidthsOf(rows);
  if (columns > 0) Narrow(columns, widths);
  std::string table;
  for (const Row& row : rows) {
    table += PadRight(Shortened(row[0], widths[0]), widths[0]);
    for (size_t i = 1; i < widths.size(); ++i)
      table += std::string(kGap, ' ') + (i == 1 ? PadRight(row[i], widths[i]) : PadLeft(row[i], widths[i]));
    table += "\n";
  }
  return table;
}

}  // namespace cli
