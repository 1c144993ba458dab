// The tables that the benchmark writes: made from a fixed seed, and real flights.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/gel/sample_table.h"

namespace kelvarin {

// 60 columns: random doubles, prices, integers, mostly zeros, sorted and unsorted keys.
SampleTable makeWide(std::size_t rows);
// An order number, one of a thousand cities, a price, a quantity and a date as text, in any order.
SampleTable makeSales(std::size_t rows);
// Twelve kinds of texts: a table of each, named "texts.date" and so on, and at last "texts" of all.
std::vector<SampleTable> makeTexts(std::size_t rows);
// Texts that are hard to make small, as tables of their own: see shapeless_texts.h.
std::vector<SampleTable> makeShapeless(std::size_t rows);
// The twelve kinds of texts and a key in ascending order, so that ranges can be read.
SampleTable makeTextsById(std::size_t rows);
// Kinds of numbers: a table of each, named "numbers.product" and so on, and "numbers" of all.
std::vector<SampleTable> makeNumbers(std::size_t rows);
// All columns of a CSV file of flights, by date, and the date as a key. Throws std::runtime_error.
SampleTable readFlights(const std::string& csvFile);

}  // namespace kelvarin
