// The tables that the benchmark writes: two that are made from a fixed seed, and real flights.
#pragma once

#include <string>

#include "benchmarks/gel/sample_table.h"

namespace kelvarin {

// 60 columns: random doubles, prices, integers, mostly zeros, sorted and unsorted keys.
SampleTable makeWide(std::size_t rows);
// An order number, one of a thousand cities, a price, a quantity and a date as text.
SampleTable makeSales(std::size_t rows);
// All columns of a CSV file of flights, by date, and the date as a key. Throws std::runtime_error.
SampleTable readFlights(const std::string& csvFile);

}  // namespace kelvarin
