#include "host/filter/output.h"

#include "host/filter/filter_library.h"

namespace px {
namespace {

// Calls `member` with the route's output, unless the route has ended.
template <class Member>
void call(OutputRoute *route, Member member) noexcept {
  if (route->isOver) return;
  try {
    member(*route->output);
  } catch (...) {
    route->fail();
  }
}

// The same behind the characters that wait.
template <class Member>
void guard(uint64_t user0, Member member) noexcept {
  auto *route = reinterpret_cast<OutputRoute *>(user0);
  route->flush();
  ++route->given;
  call(route, member);
}

int64_t emitChar(uint16_t code, uint64_t user0, uint64_t /*user1*/) {
  auto *route = reinterpret_cast<OutputRoute *>(user0);
  route->codes[route->held] = code;
  if (++route->held == OutputRoute::Capacity) route->handOnPart();
  return 0;
}

// The routine of a member that takes the routine's arguments as they are and answers nothing.
template <auto Member>
struct Plain;

template <class... Args, void (Output::*Member)(Args...)>
struct Plain<Member> {
  static int64_t routine(Args... args, uint64_t user0, uint64_t /*user1*/) {
    guard(user0, [&](Output &output) { (output.*Member)(args...); });
    return 0;
  }
};

int64_t addTabStop(const VcardTabStop *tab, uint64_t user0, uint64_t /*user1*/) {
  guard(user0, [&](Output &output) { output.addTabStop(*tab); });
  return 0;
}

int64_t emitObject(const VcardObjectRecord *object, uint64_t user0, uint64_t /*user1*/) {
  guard(user0, [&](Output &output) { output.emitObject(*object); });
  return 0;
}

int64_t getObjectBase(uint32_t *base, uint64_t user0, uint64_t /*user1*/) {
  *base = 0;
  guard(user0, [&](Output &output) { *base = output.getObjectBase(); });
  return 0;
}

int64_t emitBreak(uint32_t kind, uint32_t zero, uint64_t user0, uint64_t /*user1*/) {
  auto *route = reinterpret_cast<OutputRoute *>(user0);
  route->lastBreak = kind;
  bool stop = false;
  guard(user0, [&](Output &output) { stop = output.emitBreak(kind, zero); });
  if (route->givesUp && !route->isOver) route->isOver = route->givesUp();
  return stop || route->isOver ? 1 : 0;
}

}  // namespace

// These are out of line, so that the calls save no registers for them.

[[gnu::noinline]] void OutputRoute::handOn() noexcept {
  const std::span<const uint16_t> run(codes, held);
  given += held;
  held = 0;
  call(this, [run](Output &to) { to.emitChars(run, false); });
}

[[gnu::noinline]] void OutputRoute::handOnPart() noexcept {
  const std::span<const uint16_t> part(codes, held - 1);
  given += held - 1;
  call(this, [part](Output &to) { to.emitChars(part, true); });
  codes[0] = codes[held - 1];
  held = 1;
}

[[gnu::noinline]] void OutputRoute::fail() noexcept {
  failure = std::current_exception();
  isOver = true;
}

void routeOutput(const FilterLibrary &filter, VcardData *data, OutputRoute *route) {
  // The type is named in each row so that a routine with other arguments doesn't compile.
  auto set = [&](int16_t id, auto routine) {
    filter.setSoRtn(id, reinterpret_cast<SoRoutine>(routine), data);
  };
  filter.setUser(reinterpret_cast<uint64_t>(route), 0, data);
  set(SoIdEmitChar, SoEmitCharRoutine{emitChar});
  set(SoIdEmitSpecial, SoEmitSpecialRoutine{Plain<&Output::emitSpecial>::routine});
  set(SoIdSetCharHeight, SoSetCharHeightRoutine{Plain<&Output::setCharHeight>::routine});
  set(SoIdAddTabStop, SoAddTabStopRoutine{addTabStop});
  set(SoIdEmitBreak, SoEmitBreakRoutine{emitBreak});
  set(SoIdBeginSection, SoBeginSectionRoutine{Plain<&Output::beginSection>::routine});
  set(SoIdEmitObject, SoEmitObjectRoutine{emitObject});
  set(SoIdBeginDefinition, SoBeginDefinitionRoutine{Plain<&Output::beginDefinition>::routine});
  set(SoIdEndDefinition, SoEndDefinitionRoutine{Plain<&Output::endDefinition>::routine});
  set(SoIdRoutine88, SoRoutine88Routine{Plain<&Output::routine88>::routine});
  set(SoIdRoutine89, SoRoutine89Routine{Plain<&Output::routine89>::routine});
  set(SoIdSetCharset, SoSetCharsetRoutine{Plain<&Output::setCharset>::routine});
  set(SoIdGetObjectBase, SoGetObjectBaseRoutine{getObjectBase});
  set(SoIdEmitResourceString,
      SoEmitResourceStringRoutine{Plain<&Output::emitResourceString>::routine});
  set(SoIdUseStyle, SoUseStyleRoutine{Plain<&Output::useStyle>::routine});
  set(SoIdSetAttribute, SoSetAttributeRoutine{Plain<&Output::setAttribute>::routine});
  set(SoIdSetObjectData, SoSetObjectDataRoutine{Plain<&Output::setObjectData>::routine});
  set(SoIdCommitObjectData, SoCommitObjectDataRoutine{Plain<&Output::commitObjectData>::routine});
}

}  // namespace px
