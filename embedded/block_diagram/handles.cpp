#include "embedded/block_diagram/handles.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace embedded::block_diagram {

namespace {

/// Objects by handle, in pages. A page whose objects have all ended gives its memory back, so that a process that opens
/// and closes diagrams for days doesn't grow.
class HandleTable {
 public:
  double mint(GantrelObject* object) {
    const std::size_t number = next_++;
    if (number / page_size >= pages_.size()) pages_.push_back(std::make_unique<Page>());
    Page& page = *pages_[number / page_size];
    page.objects[number % page_size] = object;
    ++page.alive;
    return static_cast<double>(number);
  }

  bool wasMinted(double handle) const noexcept {
    return handle >= 1.0 && handle < static_cast<double>(next_) && handle == std::floor(handle);
  }

  GantrelObject* find(double handle) const {
    if (!wasMinted(handle)) return nullptr;
    const auto number = static_cast<std::size_t>(handle);
    const Page* page = pages_[number / page_size].get();
    return page ? page->objects[number % page_size] : nullptr;
  }

  void release(double handle) noexcept {
    if (!find(handle)) return;
    const auto number = static_cast<std::size_t>(handle);
    std::unique_ptr<Page>& page = pages_[number / page_size];
    page->objects[number % page_size] = nullptr;
    const bool full = (number / page_size + 1) * page_size <= next_;
    if (--page->alive == 0 && full) page.reset();
  }

 private:
  static constexpr std::size_t page_size = 4096;
  struct Page {
    std::array<GantrelObject*, page_size> objects{};
    std::size_t alive = 0;
  };

  std::vector<std::unique_ptr<Page>> pages_ = first_page();
  std::size_t next_ = 1;

  static std::vector<std::unique_ptr<Page>> first_page() {
    std::vector<std::unique_ptr<Page>> pages;
    pages.push_back(std::make_unique<Page>());
    return pages;
  }
};

/// Never destroyed: prototypes of modules may end after static objects of this library.
HandleTable& table() {
  static HandleTable* const instance = new HandleTable;
  return *instance;
}

}  // namespace

double mintHandle(GantrelObject* object) {
  return table().mint(object);
}
void releaseHandle(double handle) noexcept {
  table().release(handle);
}
bool wasMinted(double handle) noexcept {
  return table().wasMinted(handle);
}

}  // namespace embedded::block_diagram

GantrelObject::~GantrelObject() = default;

GantrelObject* Handle2GantrelObject(double handle) {
  return embedded::block_diagram::table().find(handle);
}
