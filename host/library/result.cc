#include "host/library/result.h"

#include <cstring>
#include <new>
#include <system_error>

extern "C" const char *PxResultText(int32_t result) {
  switch (result) {
    case PxGood:
      return "all went well";
    case PxEnd:
      return "nothing is left";
    case PxStopped:
      return "stopped by the caller";
    case PxErrorArgument:
      return "an argument makes no sense";
    case PxErrorOrder:
      return "the call doesn't go with those before it";
    case PxErrorBusy:
      return "the reader is in use";
    case PxErrorObject:
      return "there is no such object";
    case PxErrorFile:
      return "the file can't be opened";
    case PxErrorRead:
      return "the input can't be read";
    case PxErrorNotCards:
      return "not a vCard or vCalendar file";
    case PxErrorTemporary:
      return "a temporary file failed";
    case PxErrorMemory:
      return "out of memory";
    case PxErrorFilter:
      return "the filter library can't be loaded";
    case PxErrorInternal:
      return "a fault of the library";
    case PxErrorDamaged:
      return "the content ended early, at a byte that is no Base64";
    case PxErrorLimit:
      return "more work than the input's size allows";
    default:
      return "unknown result";
  }
}

namespace px {
namespace {

int32_t classify(int32_t otherwise, int *number, std::string *text) {
  try {
    throw;
  } catch (const Failure &error) {
    *number = error.number;
    *text = error.what();
    return error.result;
  } catch (const std::bad_alloc &) {
    return PxErrorMemory;
  } catch (const std::system_error &error) {
    *number = error.code().value();
    *text = error.what();
    const std::string local = error.code().message();
    if (text->ends_with(local)) {
      text->resize(text->size() - local.size());
      *text += systemText(error.code().value());
    }
    const bool temporary = text->find("temporary file") != std::string::npos;
    return temporary ? PxErrorTemporary : PxErrorRead;
  } catch (const std::runtime_error &error) {
    *text = error.what();
    return otherwise;
  } catch (const std::exception &error) {
    *text = error.what();
    return PxErrorInternal;
  } catch (...) {
    return PxErrorInternal;
  }
}

}  // namespace

std::string systemText(int error) {
  const char *english = strerrordesc_np(error);
  return english ? english : std::generic_category().message(error);
}

int32_t resultOfException(int32_t otherwise, int *number, std::string *text) noexcept {
  *number = 0;
  text->clear();
  try {
    return classify(otherwise, number, text);
  } catch (...) {
    return PxErrorMemory;
  }
}

}  // namespace px
