// The orders in their order, and what they come to.
#include <veltgeneral/funzioni.h>
#include <veltgeneral/host_events.h>

#include <cmath>

#include "office.h"

using namespace veltgeneral;

namespace {

// Draws how far the sort is while this lives. The sort serves the host's pending events once a
// pass, and n texts take about n ln(n) / 3 passes.
class SortProgress {
 public:
  SortProgress(Step& step, double texts) : step_(step), expected_(texts * std::log(texts) / 3) {
    setHostEvents([](void* self) { static_cast<SortProgress*>(self)->pass(); }, this);
  }
  ~SortProgress() { setHostEvents(nullptr, nullptr); }
  SortProgress(const SortProgress&) = delete;
  SortProgress& operator=(const SortProgress&) = delete;

  double passes = 0;

 private:
  void pass() {
    passes += 1;
    if (std::fmod(passes, 256) == 0) step_.progress(passes / expected_);
  }

  Step& step_;
  double expected_;
};

}  // namespace

// By customer, then by time. The key is the first part of each text; behind it stands which order
// it is. Numbers differ, so no two keys are equal.
void sortOrders(Office& office) {
  constexpr std::int16_t kKeyLength = 6 + 14 + 6;  // customer, placed, number
  if (office.orders.empty()) return;
  Step step("sort by customer and time");
  const auto count = static_cast<std::int32_t>(office.orders.size());
  TextArray keys(Bounds{1, count});
  for (std::int32_t i = 1; i <= count; ++i) {
    const Order& order = office.orders[i - 1];
    keys.set(i, office.customers[order.customer].code + order.placed + order.number + digits(i));
  }
  SortProgress progress(step, count);
  check(Funzioni().quickSortArray(keys, 1, count, 1, kKeyLength, true));

  std::vector<Order> sorted;
  for (std::int32_t i = 1; i <= count; ++i) {
    const std::string which = toUtf8(keys.at(i).substr(kKeyLength));
    sorted.push_back(std::move(office.orders[std::stoul(which) - 1]));
  }
  office.orders = std::move(sorted);
  step.done(office.orders.size(), "orders",
            toUtf8(digits(std::lround(progress.passes))) + " passes");
}

// An order's goods in euro, its carrier's price, and the customer's totals.
void addUp(Office& office) {
  Step step("join and add up");
  for (Order& order : office.orders) {
    Customer& customer = office.customers[order.customer];
    order.goods = cents(order.pieces * order.price / office.rates.at(customer.currency));
    order.carriage = office.carriers.at(customer.country).price * (order.urgent ? 2 : 1);
    customer.orders += 1;
    customer.pieces += order.pieces;
    customer.total += order.goods + order.carriage;
  }
  step.done(office.orders.size(), "orders");
}
