#include "server/setup/statistics_page.h"

#include <array>
#include <string_view>

#include <csv.h>

#include "server/setup/csv_text.h"

namespace vantry::server {

namespace {

/// The columns of figures, in the words of both forms.
struct Column {
  std::string_view key;    ///< in CSV
  std::string_view title;  ///< on the page
  std::string (*text)(const Figures&);
};

/// Whole tenths.
std::string hoursText(Moment seconds) {
  const Moment tenths = (seconds + 180) / 360;
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10);
}

constexpr std::array columns{
    Column{"bookings", "Bookings", [](const Figures& figures) { return std::to_string(figures.booked); }},
    Column{"hours_out", "Hours out", [](const Figures& figures) { return hoursText(figures.secondsOut); }},
    Column{"late", "Late", [](const Figures& figures) { return std::to_string(figures.late); }},
    Column{"unclaimed", "Unclaimed",
           [](const Figures& figures) { return std::to_string(figures.unclaimed); }},
    Column{"cancelled", "Cancelled",
           [](const Figures& figures) { return std::to_string(figures.cancelled); }},
};

std::string quoted(std::string_view text) {
  std::string cell(2 * text.size() + 2, '\0');
  cell.resize(csv_write2(cell.data(), cell.size(), text.data(), text.size(), '"'));
  return cell;
}

void addCsvLine(std::string& csv, std::string_view by, std::string_view name, const Figures& figures) {
  csv.append(quoted(by)).append(",").append(quoted(guardedCell(name)));
  for (const Column& column : columns) csv.append(",").append(column.text(figures));
  csv += ",\r\n";
}

std::string marked(std::string_view text) {
  std::string html;
  for (const char each : text) {
    switch (each) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      default:
        html += each;
    }
  }
  return html;
}

std::string monthTitle(Moment month) {
  constexpr std::array names{"January", "February", "March",     "April",   "May",      "June",
                             "July",    "August",   "September", "October", "November", "December"};
  return std::string(names.at(static_cast<std::size_t>(monthOf(month) - 1))) + ' ' +
         std::to_string(yearOf(month));
}

void addPageLine(std::string& html, std::string_view name, const Figures& figures) {
  html.append("<tr><th scope=\"row\">").append(marked(name)).append("</th>");
  for (const Column& column : columns) html.append("<td>").append(column.text(figures)).append("</td>");
  html += "</tr>\n";
}

void beginTable(std::string& html, std::string_view by) {
  html.append("<table>\n<thead><tr><th scope=\"col\">").append(marked(by)).append("</th>");
  for (const Column& column : columns) html.append("<th scope=\"col\">").append(column.title).append("</th>");
  html += "</tr></thead>\n<tbody>\n";
}

void addRefusals(std::string& html, const MonthStatistics& statistics) {
  html +=
      "<table>\n<thead><tr><th scope=\"col\">Refused because</th><th "
      "scope=\"col\">Times</th></tr></thead>\n<tbody>\n";
  for (const auto& each : statistics.refusals) {
    html.append("<tr><th scope=\"row\">").append(marked(each.reason)).append("</th><td>");
    html.append(std::to_string(each.times)).append("</td></tr>\n");
  }
  html += "</tbody>\n</table>\n";
}

constexpr std::string_view style = R"(
body { font: 11pt/1.4 sans-serif; color: #1c2530; max-width: 52em; margin: 2em auto; padding: 0 1em; }
h1 { font-size: 1.5em; margin-bottom: 0; }
table { width: 100%; border-collapse: collapse; margin: 1.5em 0; break-inside: avoid; }
th, td { padding: .25em .5em; border-bottom: 1px solid #c8ced6; text-align: right; }
th:first-child { text-align: left; width: 40%; }
tbody th { font-weight: normal; }
thead th { border-bottom: 2px solid #5b6775; }
footer { color: #5b6775; font-size: .85em; }
@page { margin: 15mm; }
@media print { body { margin: 0; padding: 0; } }
)";

}  // namespace

std::string statisticsCsv(const MonthStatistics& statistics) {
  std::string csv = "by,name";
  for (const Column& column : columns) csv.append(",").append(column.key);
  csv += ",refused\r\n";
  addCsvLine(csv, "All", statistics.location, statistics.all);
  for (const StatisticsPart& part : statistics.parts) {
    for (const auto& line : part.lines) addCsvLine(csv, part.by, line.name, line.figures);
  }
  for (const auto& each : statistics.refusals) {
    csv.append("\"Refused\",").append(quoted(each.reason)).append(columns.size() + 1, ',');
    csv.append(std::to_string(each.times)).append("\r\n");
  }
  return csv;
}

std::string statisticsHtml(const MonthStatistics& statistics) {
  const std::string title = "Statistics of " + monthTitle(statistics.month);
  const std::string where = statistics.location.empty() ? "All locations" : marked(statistics.location);
  std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
                     title + "</title>\n<style>" + std::string(style) + "</style>\n</head>\n<body>\n<h1>" +
                     title + "</h1>\n<p>" + where + "</p>\n";
  beginTable(html, "All");
  addPageLine(html, "All bookings", statistics.all);
  html += "</tbody>\n</table>\n";
  for (const StatisticsPart& part : statistics.parts) {
    if (part.lines.empty()) continue;
    beginTable(html, part.by);
    for (const auto& line : part.lines) addPageLine(html, line.name, line.figures);
    html += "</tbody>\n</table>\n";
  }
  if (!statistics.refusals.empty()) addRefusals(html, statistics);
  html += "<footer>Made on " + momentText(statistics.madeAt).substr(0, 16) +
          ". Types count each piece and item by itself.</footer>\n</body>\n</html>\n";
  return html;
}

}  // namespace vantry::server
