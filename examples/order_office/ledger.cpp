// The orders in their order, and what they come to.
#include <veltgeneral/funzioni.h>
#include <veltgeneral/host_events.h>

#include <cmath>

#include "office.h"

namespace office {

namespace {

constexpr std::int16_t kKeyLength = 6 + 14 + 6;  // customer, placed, number

// The sort serves the host's pending events once a pass; n texts take about n ln(n) / 3 passes.
class SortProgress {
 public:
  SortProgress(Step& step, std::size_t texts) : step_(step), count_(static_cast<double>(texts)) {
    veltgeneral::setHostEvents([](void* self) { static_cast<SortProgress*>(self)->pass(); }, this);
  }
  ~SortProgress() { veltgeneral::setHostEvents(nullptr, nullptr); }
  SortProgress(const SortProgress&) = delete;
  SortProgress& operator=(const SortProgress&) = delete;

  std::size_t passes() const { return passes_; }

 private:
  void pass() {
    if (++passes_ % 256 == 0)
      step_.progress(3 * static_cast<double>(passes_) / (count_ * std::log(count_)));
  }

  Step& step_;
  double count_;
  std::size_t passes_ = 0;
};

}  // namespace

// By customer, then by time. The key is the first part of each text; behind it stands which order
// it is of. Numbers differ, so no two keys are equal.
void sortOrders(Office& office) {
  if (office.orders.empty()) return;
  Step step("sort by customer and time");
  const auto count = static_cast<std::int32_t>(office.orders.size());
  veltgeneral::TextArray keys(veltgeneral::Bounds{1, count});
  for (std::int32_t i = 1; i <= count; ++i) {
    const Order& order = office.orders[i - 1];
    keys.set(i, office.customers[order.customer].code + order.placed + order.number + digits(i));
  }
  SortProgress progress(step, office.orders.size());
  check(veltgeneral::Funzioni().quickSortArray(keys, 1, count, 1, kKeyLength, true));

  std::vector<Order> sorted;
  sorted.reserve(office.orders.size());
  for (std::int32_t i = 1; i <= count; ++i) {
    const std::string of = toUtf8(keys.at(i).substr(kKeyLength));
    sorted.push_back(std::move(office.orders[std::stoul(of) - 1]));
  }
  office.orders = std::move(sorted);
  step.done(office.orders.size(), "orders", std::to_string(progress.passes()) + " passes");
}

// An order's goods in euro, its carrier's price, and the customer's totals.
void addUp(Office& office) {
  Step step("join and add up");
  for (Order& order : office.orders) {
    Customer& customer = office.customers[order.customer];
    const double euro = order.pieces * order.price / office.rates.at(customer.currency);
    order.goods = static_cast<Cents>(std::floor(euro * 100 + 0.5));
    order.carriage = office.carriers.at(customer.country).price * (order.urgent ? 2 : 1);
    customer.orders += 1;
    customer.pieces += order.pieces;
    customer.total += order.total();
  }
  step.done(office.orders.size(), "orders");
}

}  // namespace office
