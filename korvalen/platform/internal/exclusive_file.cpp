// The portable part of exclusive files and work files: argument checks and
// failure values.
#include "korvalen/platform/internal/exclusive_file.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code open_exclusive(const wchar_t* name, FILE*& file) {
  file = nullptr;
  if (name == nullptr || *name == 0) return make_error(std::errc::invalid_argument);
  const std::error_code error = guarded([&] { return native::open_exclusive(name, file); });
  if (error) file = nullptr;
  return error;
}

std::error_code create_new_file(const wchar_t* name) {
  if (name == nullptr || *name == 0) return make_error(std::errc::invalid_argument);
  return guarded([&] { return native::create_new_file(name); });
}

namespace {

std::error_code not_held() { return make_error(std::errc::bad_file_descriptor); }

}  // namespace

std::error_code claim_work_file(const wchar_t* name, WorkContent content, WorkFile& work) {
  drop_work_file(work);
  if (name == nullptr || *name == 0) return make_error(std::errc::invalid_argument);
  const std::error_code error = guarded([&] {
    work.name = name;
    return native::claim_work_file(name, content, work);
  });
  if (error) work = WorkFile{};
  return error;
}

std::error_code finish_work_file(WorkFile& work, bool sync) {
  if (work.stream == nullptr) return not_held();
  return guarded([&] { return native::finish_work_file(work, sync); });
}

std::error_code replace_with_work_file(WorkFile& work, const wchar_t* target) {
  if (work.stream == nullptr) return not_held();
  if (target == nullptr || *target == 0) return make_error(std::errc::invalid_argument);
  const std::error_code error =
      guarded([&] { return native::replace_with_work_file(work, target); });
  if (!error) work = WorkFile{};
  return error;
}

std::error_code publish_work_file(WorkFile& work, const wchar_t* name) {
  if (work.stream == nullptr) return not_held();
  if (name == nullptr || *name == 0) return make_error(std::errc::invalid_argument);
  const std::error_code error = guarded([&] { return native::publish_work_file(work, name); });
  if (!error) work = WorkFile{};
  return error;
}

void drop_work_file(WorkFile& work) {
  if (work.stream != nullptr) {
    (void)guarded([&] {
      native::drop_work_file(work);
      return std::error_code();
    });
  }
  work = WorkFile{};
}

std::error_code remove_abandoned_work_file(const wchar_t* name) {
  if (name == nullptr || *name == 0) return make_error(std::errc::invalid_argument);
  return guarded([&] { return native::remove_abandoned_work_file(name); });
}

}  // namespace korvalen::platform
