#include "benchmarks/gel/shapeless_texts.h"

#include <string_view>

#include <fmt/format.h>

#include "benchmarks/gel/chance.h"

namespace kelvarin {

namespace {

constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kSeparators = ".,;:-_/#@!?()[]{}<>|+*=&%$~^' ";

char oneOf(std::string_view characters, Chance& chance) {
  return characters[chance.below(characters.size())];
}

std::string word(Chance& chance) {
  std::string letters(1 + chance.below(8), ' ');
  for (char& letter : letters) {
    letter = oneOf(kLetters, chance);
  }
  return letters;
}

enum class Field { number, word, hexadecimal };

struct Piece {
  Field field;
  char separator;  // behind it
};

using Shape = std::vector<Piece>;

Shape drawnShape(Chance& chance) {
  Shape shape(3 + chance.below(8));
  for (Piece& piece : shape) {
    piece = {static_cast<Field>(chance.below(3)), oneOf(kSeparators, chance)};
  }
  return shape;
}

std::string textOf(const Shape& shape, Chance& chance) {
  std::string text;
  for (const Piece& piece : shape) {
    switch (piece.field) {
      case Field::number:
        text += std::to_string(chance.below(1'000'000));
        break;
      case Field::word:
        text += word(chance);
        break;
      case Field::hexadecimal:
        text += fmt::format("{:08x}", chance.below(std::uint64_t{1} << 32));
    }
    text += piece.separator;
  }
  return text;
}

std::string randomCharacters(Chance& chance) {
  constexpr std::uint64_t kFirst = 33;  // of those that can be seen
  constexpr std::uint64_t kCount = 94;
  std::string text(5 + chance.below(36), ' ');
  for (char& character : text) {
    character = static_cast<char>(kFirst + chance.below(kCount));
  }
  return text;
}

template <typename Make>
TextColumn madeColumn(const char* name, std::uint64_t seed, std::size_t rows, Make make) {
  Chance chance(seed);
  TextColumn column{.name = name, .values = {}, .bitsPerValue = 0.0};
  column.values.reserve(rows);
  for (std::size_t row = 0; row < rows; ++row) {
    column.values.push_back(make(chance, row));
  }
  return column;
}

}  // namespace

std::vector<TextColumn> makeShapelessColumns(std::size_t rows) {
  constexpr std::size_t kShapes = 40;
  constexpr std::size_t kRowsOfShape = 5000;
  Chance chance(1);
  std::vector<Shape> shapes(kShapes);
  for (Shape& shape : shapes) {
    shape = drawnShape(chance);
  }
  const auto ofItsOwn = [](Chance& draw, std::size_t) { return textOf(drawnShape(draw), draw); };
  const auto ofForty = [&](Chance& draw, std::size_t) {
    return textOf(shapes[draw.below(kShapes)], draw);
  };
  const auto inTurns = [&](Chance& draw, std::size_t row) {
    return textOf(shapes[row / kRowsOfShape % kShapes], draw);
  };
  const auto halfOfOne = [&](Chance& draw, std::size_t) {
    return textOf(draw.below(100) < 55 ? shapes[0] : drawnShape(draw), draw);
  };
  const auto ofWords = [](Chance& draw, std::size_t) {
    std::string text = word(draw);
    for (int i = 0; i < 5; ++i) {
      text += " " + word(draw);
    }
    return text;
  };
  const auto random = [](Chance& draw, std::size_t) { return randomCharacters(draw); };
  return {
      madeColumn("own_shapes", 2, rows, ofItsOwn),  madeColumn("forty_shapes", 3, rows, ofForty),
      madeColumn("turns", 4, rows, inTurns),        madeColumn("half", 5, rows, halfOfOne),
      madeColumn("random_words", 6, rows, ofWords), madeColumn("random", 7, rows, random),
  };
}

}  // namespace kelvarin
