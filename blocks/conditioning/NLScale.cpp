// NLScale: maps an input through a characteristic of ten points, with straight lines between them.
//
//   Q         the value of the characteristic; Y0 at and below X0, Y9 at and above X9; 0 while
//             disabled
//   InRange   1 while the input lies strictly between X0 and X9; 0 at the ends and beyond them,
//             where an end value is held, and while disabled
//
// Only an Enable of exactly 1.0 enables. The points are meant to rise from X0 to X9; nothing checks
// that. The first segment that holds the input counts, so an input on an inner point belongs to the
// segment that ends there. All ten points count: a shorter table repeats its last one, and points
// that are left at 0 make 0 the end of the table. An input that is not a number gives 0 with
// InRange 1.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct Point {
  Number X;
  Number Y;
};
constexpr std::size_t kPoints = 10;

struct In {
  ExactFlag Enable;
  Number InSignal;
  Point points[kPoints];
};
#define POINT(i)                                                \
  FIELD_AS(In, points[i].X, "X" #i, "input of breakpoint " #i), \
      FIELD_AS(In, points[i].Y, "Y" #i, "output at breakpoint " #i)
constexpr Field inputs[] = {
    FIELD(In, Enable, "maps while exactly 1.0"),
    FIELD(In, InSignal, "value to map"),
    POINT(0),
    POINT(1),
    POINT(2),
    POINT(3),
    POINT(4),
    POINT(5),
    POINT(6),
    POINT(7),
    POINT(8),
    POINT(9),
};
#undef POINT

struct Out {
  Number Q;
  Flag InRange;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "value of the characteristic, 0 while disabled"),
    FIELD(Out, InRange, "1 while the input lies strictly between X0 and X9"),
};

Out step(const In& in) {
  if (!in.Enable) return {};
  const Number x = in.InSignal;
  const Point& first = in.points[0];
  const Point& last = in.points[kPoints - 1];
  if (x <= first.X) return {.Q = first.Y, .InRange = {}};
  if (x >= last.X) return {.Q = last.Y, .InRange = {}};
  for (std::size_t i = 0; i + 1 < kPoints; ++i) {
    const Point& from = in.points[i];
    const Point& to = in.points[i + 1];
    if (from.X <= x && x <= to.X)
      return {.Q = from.Y + (to.Y - from.Y) / (to.X - from.X) * (x - from.X), .InRange = {true}};
  }
  return {.Q = 0.0, .InRange = {true}};  // the input or a point is not a number
}

constexpr Block<In, Out> block = {
    .family = "conditioning",
    .title = "scaling through a characteristic of ten points",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(NLScale, block)
