#include "lists/reply_list.h"

#include <array>

#include "frame/app.h"
#include "lists/grids.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kNumberHeading = "Number";

/// Columns that sort along with one of this heading.
struct Companions {
  std::string_view heading;
  std::string_view first;
  std::string_view second;
};
constexpr Companions kCompanions[] = {
    {"Start Time", "Start Time24", ""},
    {"End Date", "End Time24", "End Time"},
    {"End Time", "End Date", "End Time24"},
};

/// The columns of one moment, in the order in which they sort.
using Moment = std::array<std::string_view, 3>;
constexpr Moment kMoments[] = {{"Start Date", "Start Time24", "Start Time"},
                               {"End Date", "End Time24", "End Time"}};

/// The mark of an alignment in a grid's format.
char markOf(Align align) {
  return align == Align::Left ? '<' : align == Align::Right ? '>' : '^';
}

/// The moment to which a column belongs, or nullptr.
const Moment* momentOf(std::string_view heading) {
  for (const Moment& moment : kMoments) {
    for (const std::string_view each : moment) {
      if (each == heading) return &moment;
    }
  }
  return nullptr;
}

int columnOf(const Grid& grid, std::string_view heading) {
  for (int col = 0; col < grid.Cols; ++col) {
    if (grid.TextMatrix(0, col) == heading) return col;
  }
  return -1;
}

}  // namespace

ReplyList::ReplyList(App& app, Grid& grid, std::optional<MomentFields> moments)
    : app_(app), grid_(grid), moments_(moments) {
  grid.AfterMoveColumn = [&grid] { SetColumnOrderBookings(grid, grid.MovedCol); };
}

// Columns

void ReplyList::build(const ReplyLayout& layout) {
  // What the operator chose in the window since the first columns stays.
  if (layout_.columns.empty() && layout.merges) SetGridMerge(grid_, app_.preferences.MergeCells);
  layout_ = layout;
  std::string format;
  for (const ReplyColumn& column : layout.columns) {
    const bool byNumber = column.kind == CellKind::Piece && !app_.preferences.Barcodes;
    if (!format.empty()) format += '|';
    format += markOf(column.align);
    format += byNumber ? kNumberHeading : column.heading;
  }
  clear();
  grid_.FixedRows = 1;
  grid_.FormatString.put({});  // the same format again builds the columns anew
  grid_.FormatString = format;
  for (int col = 0; col < grid_.Cols; ++col) {
    const ReplyColumn& column = layout.columns[static_cast<std::size_t>(col)];
    grid_.ColWidth(col, column.width);
    grid_.ColSortKind(col, column.sort);
    grid_.ColData(col, col);
    grid_.MergeCol(col, true);
  }
}

void ReplyList::clear() {
  grid_.Rows = 1;
}

const std::string& ReplyList::text(int row, int column) const {
  return grid_.TextMatrix(row, grid_.columnOfData(column));
}

void ReplyList::setText(int row, int column, std::string text) {
  grid_.TextMatrix(row, grid_.columnOfData(column), std::move(text));
}

std::string ReplyList::valueOf(int row, std::string_view tag) const {
  for (std::size_t column = 0; column < layout_.columns.size(); ++column) {
    if (layout_.columns[column].tag == tag) return text(row, static_cast<int>(column));
  }
  return {};
}

// Rows

int ReplyList::fill() {
  grid_.Redraw = false;
  clear();
  return add();
}

int ReplyList::add() {
  grid_.Redraw = false;
  if (!grid_.hasData()) keys_.clear();
  const int total = app_.message.Count(layout_.walk);
  int row = grid_.Rows;
  grid_.Rows = row + total;
  while (app_.message.NextRecord(layout_.walk)) {
    if (hooks.progress) hooks.progress(row, total);
    if (isRepeated() || (hooks.accepts && !hooks.accepts())) continue;
    fillRow(row);
    if (hooks.filled) hooks.filled(row);
    ++row;
  }
  return finish(row - 1);
}

int ReplyList::fill(const std::vector<ListRow>& rows) {
  grid_.Redraw = false;
  clear();
  grid_.Rows = static_cast<int>(rows.size()) + 1;
  int row = 0;
  for (const ListRow& texts : rows) setRow(++row, texts);
  return finish(row);
}

int ReplyList::finish(int rows) {
  grid_.Rows = rows + 1;
  grid_.Row = 0;
  dress();
  grid_.Redraw = true;
  return rows;
}

int ReplyList::addRow(const ListRow& texts) {
  const int row = grid_.Rows;
  grid_.Rows = row + 1;
  setRow(row, texts);
  dress();
  return row;
}

void ReplyList::setRow(int row, const ListRow& texts) {
  int column = 0;
  for (const std::string& text : texts) setText(row, column++, text);
}

ListRow ReplyList::row(int row) const {
  ListRow texts;
  for (int column = 0; column < grid_.Cols; ++column) texts.push_back(text(row, column));
  return texts;
}

bool ReplyList::isRepeated() {
  return !layout_.uniqueKey.empty() && !keys_.insert(app_.message.Get(layout_.uniqueKey)).second;
}

void ReplyList::fillRow(int row) {
  moment_.clear();  // the fields may show another one by now
  for (int col = 0; col < grid_.Cols; ++col) {
    const auto place = static_cast<std::size_t>(grid_.ColData(col));
    grid_.TextMatrix(row, col, cellText(layout_.columns[place]));
  }
}

std::string ReplyList::cellText(const ReplyColumn& column) {
  const TagMessage& message = app_.message;
  const std::string_view tag = hooks.tagOf ? hooks.tagOf(column) : column.tag;
  switch (column.kind) {
    case CellKind::Plain:
      break;
    case CellKind::Number:
      return std::to_string(intOf(message.Get(tag)));
    case CellKind::YesNo:
      return message.Get(tag) == "Y" ? "Y" : "N";
    case CellKind::Requester:
      return requesterText(message.Get(tag));
    case CellKind::Date:
    case CellKind::Time24:
    case CellKind::Time:
      return momentText(column.kind, message.Get(tag));
    case CellKind::Piece:
      return message.Get(pieceTag(app_));
    case CellKind::Own:
      return hooks.ownText ? hooks.ownText(column) : std::string();
  }
  return message.Get(tag);
}

std::string_view pieceTag(const App& app) {
  return app.preferences.Barcodes ? tags::BNO : tags::ENO;
}

std::string requesterText(std::string_view value) {
  const std::string_view requester = trim(value);
  if (val(requester) < 0) return "Requester Withheld";
  return requester.empty() ? "Administrative" : std::string(requester);
}

std::string ReplyList::momentText(CellKind kind, std::string_view moment) {
  if (moment.empty()) return {};
  const MomentFields& fields = moments_.value();
  // Date and times of one moment are columns beside each other.
  if (moment != moment_) {
    ServerTools::PutControlDate(moment, fields.date);
    ServerTools::PutControlTime(moment, fields.time);
    moment_ = moment;
  }
  if (kind == CellKind::Date) return fields.date.shortDate();
  return kind == CellKind::Time24 ? fields.time.text24() : fields.time.textAmPm();
}

/// There are new rows: their cells merge and their columns fit. What is hidden stays so.
void ReplyList::dress() {
  if (layout_.merges) SetGridMerge(grid_, grid_.MergeCells == MergeMode::Free);
  if (layout_.fit == ColumnFit::Preferred) SetGridAutoSize(app_, grid_);
  if (layout_.fit == ColumnFit::Always) grid_.AutoSize(0, grid_.Cols - 1, layout_.widest);
}

// Order

void ReplyList::sort(SortOrder order) {
  const int column = grid_.MouseCol;
  if (column < 0 || column >= grid_.Cols) return;
  grid_.Redraw = false;
  grid_.ColSort(column, order);
  // The leftmost decides first: the columns of a moment keep their order wherever they are moved.
  for (const Companions& row : kCompanions) {
    if (row.heading != grid_.TextMatrix(0, column)) continue;
    for (const std::string_view heading : {row.first, row.second}) {
      if (const int col = columnOf(grid_, heading); col >= 0) grid_.ColSort(col, order);
    }
  }
  grid_.Sort();
  grid_.Row = 0;
  grid_.Redraw = true;
}

void ReplyList::sortWhole(SortOrder order) {
  if (grid_.MouseCol < 0 || grid_.MouseCol >= grid_.Cols) return;
  const int moved = grid_.ColData(grid_.MouseCol);
  grid_.Redraw = false;
  grid_.ColPosition(grid_.columnOfData(0), 0);  // the key, which is hidden
  grid_.ColPosition(grid_.columnOfData(moved), 1);
  SetColumnOrderBookings(grid_, 1);
  for (int col = 1; col < grid_.Cols; ++col) grid_.ColSort(col, order);
  grid_.Sort();
  grid_.Row = 0;  // the row of the same number is another record now
  if (grid_.hasData()) grid_.Row = grid_.FixedRows;
  grid_.Redraw = true;
}

void ReplyList::sortBy(int firstColumn, int lastColumn) {
  grid_.Redraw = false;
  // A sort keeps the order of equal rows, so that the last one decides first.
  for (int column = lastColumn; column >= firstColumn; --column) {
    grid_.ColSort(grid_.columnOfData(column), SortOrder::Ascending);
    grid_.Sort();
  }
  grid_.Row = 0;
  grid_.Redraw = true;
}

void SetColumnOrderBookings(Grid& grid, int movedColumn) {
  if (movedColumn < 0 || movedColumn >= grid.Cols) return;
  const Moment* moment = momentOf(grid.TextMatrix(0, movedColumn));
  if (!moment) return;
  // Each column goes behind the one before it; the first that the list has takes the place of the moved one.
  int place = movedColumn;
  bool first = true;
  for (const std::string_view heading : *moment) {
    const int col = columnOf(grid, heading);
    if (col < 0) continue;
    if (!first && col > place) ++place;
    grid.ColPosition(col, place);
    first = false;
  }
}

}  // namespace vantry
