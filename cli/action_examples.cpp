#include "cli/action_examples.h"

#include <algorithm>
#include <iterator>

namespace kelvarin {

namespace {

struct Example {
  const char* typeName;
  const char* element;
};

constexpr Example kExamples[] = {
    {"Calculator", R"(<Calculator name='compute'>
  <InputVars>
    <InputVar column='price'/>
    <InputVar column='item' isNumber='0'/>
  </InputVars>
  <OutputVars>
    <OutputVar name='gross'>price * 1.19</OutputVar>
    <OutputVar name='label' meta='U'>toupper(item)</OutputVar>
  </OutputVars>
</Calculator>
)"},
    {"CalculatorVectorized", R"(<CalculatorVectorized name='compute'>
  <!-- The table on input pin 1 names the columns of the vector: amount, price; amount, fee. -->
  <OutputVars>
    <OutputVar name='amount // "_gross"'>amount * 1.19</OutputVar>
  </OutputVars>
</CalculatorVectorized>
)"},
    {"FilterRows", R"(<FilterRows name='keep'>
  <Expression>price >= 10 &amp;&amp; price &lt; 100</Expression>
  <InputVars>
    <InputVar column='price'/>
  </InputVars>
</FilterRows>
)"},
    {"ReadColumnarGel",
     R"(<ReadColumnarGel name='prices' fileName='prices.cgel_kelvarin' readAllColumns='0'>
  <ColumnsToRead>
    <SL><S>item</S><S>price</S></SL>
  </ColumnsToRead>
</ReadColumnarGel>
)"},
    {"writeColumnarGel",
     "<writeColumnarGel name='store' file='prices.cgel_kelvarin' replaceAtEnd='1'/>\n"},
    {"ReadCSV", R"(<ReadCSV name='prices' file='prices.csv' separator=',' nullText='NA'>
  <Column name='item' meta='U'/>
</ReadCSV>
)"},
    {"WriteCSV", "<WriteCSV name='result' file='result.csv' separator=';'/>\n"},
    {"ReadParquet", "<ReadParquet name='prices' file='prices.parquet'/>\n"},
    {"WriteParquet", "<WriteParquet name='result' file='result.parquet'/>\n"},
    {"ReadArrow", "<ReadArrow name='prices' file='prices.arrow'/>\n"},
    {"WriteArrow", "<WriteArrow name='result' file='result.arrow'/>\n"},
    {"InlineTable", R"(<InlineTable name='prices'>
  <Column name='item' meta='U'/>
  <Column name='price' meta='F'/>
  <Row><V>cup</V><V>3.5</V></Row>
  <Row><V>kettle</V><V null='1'/></Row>
</InlineTable>
)"},
    {"Discard", "<Discard name='end'/>\n"},
};

}  // namespace

const char* exampleOf(const QString& typeName) {
  const auto found = std::ranges::find_if(kExamples, [&typeName](const Example& example) {
    return typeName == QLatin1String(example.typeName);
  });
  return found == std::end(kExamples) ? nullptr : found->element;
}

}  // namespace kelvarin
