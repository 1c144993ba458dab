#include "cli/graph_tests/compared_tables.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "cli/graph_run.h"
#include "cli/graph_tests/messages.h"
#include "cli/program_services.h"
#include "host/contract/action_item.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

namespace {

struct Value {
  bool isNull = true;
  bool isNumber = false;
  double number = 0.0;
  QString text;
};

using Row = std::vector<Value>;

Value valueOf(const OneRow& row, int column) {
  Value value;
  unsigned short isMissing = 0;
  value.text = row.col(column, &isMissing);
  value.isNull = isMissing != 0;
  value.isNumber = row.getMetaType(column) != MetaTypeColumn::text;
  if (value.isNumber && !value.isNull) {
    bool isNumberMissing = false;
    value.number = row.colAsDouble(column, &isNumberMissing);
  }
  return value;
}

Row rowOf(const OneRow& row) {
  Row values;
  for (int i = 0; i < row.sz(); ++i) {
    values.push_back(valueOf(row, i));
  }
  return values;
}

QString shown(const Value& value) {
  if (value.isNull) {
    return QStringLiteral("null");
  }
  return value.isNumber ? value.text : u'\'' + value.text + u'\'';
}

QString shown(const Row& row) {
  constexpr std::size_t kShown = 12;
  QStringList values;
  for (std::size_t i = 0; i < std::min(kShown, row.size()); ++i) {
    values += shown(row[i]);
  }
  return values.join(QStringLiteral(", ")) +
         (row.size() > kShown ? QStringLiteral(", ...") : QString());
}

bool isNear(double one, double other, double tolerance) {
  if (std::isnan(one) || std::isnan(other)) {
    return std::isnan(one) && std::isnan(other);
  }
  return one == other ||
         std::abs(one - other) <= tolerance * std::max({1.0, std::abs(one), std::abs(other)});
}

// A column may be a number in one file and a text in the other, because of a single value.
bool isSame(const Value& one, const Value& other, double tolerance) {
  if (one.isNull || other.isNull) {
    return one.isNull == other.isNull;
  }
  if (one.isNumber == other.isNumber) {
    return one.isNumber ? isNear(one.number, other.number, tolerance) : one.text == other.text;
  }
  const Value& text = one.isNumber ? other : one;
  const Value& number = one.isNumber ? one : other;
  bool isNumber = false;
  const double parsed = text.text.toDouble(&isNumber);
  return isNumber && isNear(parsed, number.number, tolerance);
}

// What the comparison has found.
struct Outcome {
  QString difference;  // null: none
};

class CompareTables final : public ActionItem {
 public:
  static constexpr char kTypeName[] = "CompareTables";

  CompareTables(XMLNode node, GlobalParameters* parameters, const ComparedFile& comparison,
                Outcome& outcome)
      : ActionItem(node, parameters), m_comparison(comparison), m_outcome(outcome) {
    m_inputPinCount = 2;
    m_outputPinCount = 0;
  }

  const char* typeName() const override { return kTypeName; }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new CompareTables(node, parameters, m_comparison, m_outcome);
  }
  void setComputeRoutine() override {
    computeRoutine = [](ActionItem* action) { return static_cast<CompareTables*>(action)->next(); };
  }

 private:
  // True at the end, or at the first difference.
  bool next() {
    const OneRow* expected = getNextRowFromInPin(0);
    const Row wanted = expected == nullptr ? Row() : rowOf(*expected);
    const bool isWanted = expected != nullptr;
    const OneRow* found = getNextRowFromInPin(1);
    if (m_row++ == 0 && !haveSameColumns()) {
      return true;
    }
    if (m_comparison.isOrderFree) {
      return keep(isWanted, wanted, found);
    }
    return compare(isWanted, wanted, found != nullptr, found == nullptr ? Row() : rowOf(*found));
  }

  bool haveSameColumns() {
    const OneRow* expected = announcedColumnsOfInPin(0);
    const OneRow* found = announcedColumnsOfInPin(1);
    if (expected == nullptr || found == nullptr) {
      return true;
    }
    m_names = expected->getColNamesDeep();
    const QVector<QString> names = found->getColNamesDeep();
    for (const QString& name : m_names) {
      if (!names.contains(name)) {
        return differs(test_messages::columnMissing(name));
      }
    }
    for (const QString& name : names) {
      if (!m_names.contains(name)) {
        return differs(test_messages::columnTooMany(name));
      }
    }
    const auto [one, other] = std::ranges::mismatch(m_names, names);
    return one == m_names.end() || differs(test_messages::columnsInOtherOrder(*one, *other));
  }

  // Always false.
  bool differs(const QString& difference) {
    m_outcome.difference = difference;
    return false;
  }

  bool compare(bool isWanted, const Row& wanted, bool isFound, const Row& found) {
    if (!isWanted || !isFound) {
      if (isWanted) {
        differs(test_messages::rowMissing(m_row, shown(wanted)));
      } else if (isFound) {
        differs(test_messages::rowTooMany(m_row, shown(found)));
      }
      return true;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (!isSame(wanted[i], found[i], m_comparison.tolerance)) {
        differs(test_messages::valueDiffers(m_row, m_names[static_cast<qsizetype>(i)],
                                            shown(wanted[i]), shown(found[i])));
        return true;
      }
    }
    return false;
  }

  bool keep(bool isWanted, const Row& wanted, const OneRow* found) {
    if (isWanted) {
      m_wanted.push_back(wanted);
    }
    if (found != nullptr) {
      m_found.push_back(rowOf(*found));
    }
    if (isWanted || found != nullptr) {
      return false;
    }
    compareSorted();
    return true;
  }

  void compareSorted() {
    const auto isBefore = [](const Row& one, const Row& other) {
      return std::ranges::lexicographical_compare(one, other, {}, &Value::text, &Value::text);
    };
    std::ranges::stable_sort(m_wanted, isBefore);
    std::ranges::stable_sort(m_found, isBefore);
    const std::size_t count = std::max(m_wanted.size(), m_found.size());
    for (std::size_t i = 0; i < count; ++i) {
      m_row = static_cast<long long>(i) + 1;
      const bool isWanted = i < m_wanted.size();
      const bool isFound = i < m_found.size();
      if (compare(isWanted, isWanted ? m_wanted[i] : Row(), isFound,
                  isFound ? m_found[i] : Row())) {
        return;
      }
    }
  }

  const ComparedFile m_comparison;
  Outcome& m_outcome;
  QVector<QString> m_names;
  long long m_row = 0;
  std::vector<Row> m_wanted;  // where rows may come in any order
  std::vector<Row> m_found;
};

QByteArray documentOf(const TableKind& expected, const TableKind& found) {
  return QStringLiteral(
             "<KelvarinGraph version='1.0'><Parameters><Parameter name='expected' value=''/>"
             "<Parameter name='found' value=''/></Parameters><Actions>%1%2<CompareTables "
             "name='compare'/></Actions><Links><Link from='expected' to='compare'/>"
             "<Link from='found' to='compare' toPin='1'/></Links></KelvarinGraph>")
      .arg(expected.readElement(QStringLiteral("expected")),
           found.readElement(QStringLiteral("found")))
      .toUtf8();
}

QString firstError(const RunResult& result) {
  const auto found = std::ranges::find(result.log, LogLevel::error, &LogLine::level);
  return found == result.log.end() ? QString() : found->text;
}

// What reads the tables has nothing to say but its errors, which the result has.
class SilentServices final : public HostServices {
 public:
  void log(LogLevel, const QString&, const ActionItem*) override {}
  bool outOfDiskSpace(const QString&, int, bool) override { return false; }
};

}  // namespace

QString tableDifference(const QString& expected, const TableKind& expectedKind,
                        const QString& found, const TableKind& foundKind,
                        const ComparedFile& comparison, const std::string& plugin) {
  Outcome outcome;
  SilentServices services;
  HostSession session{&services};
  const HostSession::Scope scope(&session);
  const auto catalogue = loadCatalogue(
      plugin, std::make_unique<CompareTables>(XMLNode::emptyNode(), nullptr, comparison, outcome));
  if (!catalogue) {
    return catalogue.error();
  }
  auto graph =
      parseGraph(documentOf(expectedKind, foundKind), expected, **catalogue,
                 {{QStringLiteral("expected"), expected}, {QStringLiteral("found"), found}});
  if (!graph) {
    return test_messages::cannotCompare(graph.error().front().message);
  }
  RunRecord record;
  const RunResult result = runGraph(*graph, record);
  return result.isOk() ? outcome.difference : test_messages::cannotCompare(firstError(result));
}

}  // namespace kelvarin
