#include "host/reading/call_reader.h"

#include "px/vcrd.h"

namespace px {

CallReader::CallReader(const FilterLibrary &filter, CardEvents *events, LineNoteReader *notes,
                       const SpoolFile *viewText)
    : events_(*events),
      notes_(notes),
      summary_(events, notes, viewText),
      property_(filter, events, notes) {}

void CallReader::beginRun(int16_t format, VcardStream *stream, bool inPlace) {
  format_ = format;
  inPlace_ = inPlace;
  styles_.clear();
  property_.beginRun(format, stream);
}

// Definitions: of styles, and of attachments, whose characters are the title.

void CallReader::beginDefinition(uint32_t type, uint32_t, const void *record) {
  if (type == SoDefinitionStyle) {
    styles_.begin(*static_cast<const VcardStyleDef *>(record));
  } else if (type == SoDefinitionAttachment) {
    place_ = Place::Title;
    title_.clear();
  }
}

void CallReader::setCharHeight(uint32_t height) { styles_.setCharHeight(height); }

void CallReader::setAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t) {
  styles_.setAttribute(a, b, c);
}

void CallReader::endDefinition(uint32_t type, uint32_t id) {
  if (type == SoDefinitionStyle) {
    styles_.end(id);
  } else if (type == SoDefinitionAttachment) {
    place_ = Place::Listing;
    property_.object({dataStart_, dataLength_}, title_);
  }
}

void CallReader::useStyle(uint32_t id) {
  const StyleRole role = styles_.role(id);
  if (role == StyleRole::Heading && place_ == Place::Summary) {
    summary_.heading(styles_.headingLevel(id));
  } else if (role == StyleRole::Label && paragraphBegins_) {
    // Only a label behind a paragraph's style begins a property: a reference to a picture has such
    // a style of its own inside of one.
    if (place_ == Place::Summary) summary_.end();
    place_ = Place::Listing;
    property_.begin();
  } else if (place_ == Place::Listing) {
    property_.style(role);
  }
  paragraphBegins_ = role == StyleRole::Paragraph;
}

// Sections.

void CallReader::beginSection(uint32_t, uint32_t, uint32_t) {
  endSection();
  Section section;
  section.number = ++section_;
  section.format = format_;
  note_.reset();
  if (notes_ && !notes_->nextSection(&note_.emplace())) note_.reset();
  if (note_) {
    section.component = note_->component;
    section.version = note_->version;
    section.extent = note_->extent;
    section.partOf = note_->partOf;
  }
  events_.beginSection(section);
  place_ = Place::Summary;
  const SectionNote *note = note_ ? &*note_ : nullptr;
  summary_.begin(format_, note, inPlace_);
  property_.beginSection(note);
}

bool CallReader::emitBreak(uint32_t kind, uint32_t) {
  if (place_ == Place::Summary) {
    if (kind == SoBreakParagraph) summary_.endParagraph();
  } else {
    property_.end();
  }
  if (kind != SoBreakParagraph) endSection();
  return false;
}

void CallReader::endRun() { endSection(); }

void CallReader::endSection() {
  if (place_ == Place::Outside) return;
  if (place_ == Place::Summary) summary_.end();
  property_.end();
  place_ = Place::Outside;
  events_.endSection();
}

// Text.

void CallReader::emitChars(std::span<const uint16_t> codes, bool more) {
  const std::string_view utf8 = decoder_.decode(codes, more);
  if (utf8.empty()) return;  // so far only the beginning of a character
  if (place_ == Place::Summary) summary_.text(utf8, stringBegins_);
  if (place_ == Place::Listing) property_.text(utf8);
  if (place_ == Place::Title) title_ += utf8;
  stringBegins_ = false;
}

void CallReader::setCharset(uint32_t set) {
  decoder_.setCharset(set);
  stringBegins_ = true;
  if (place_ == Place::Listing) property_.beginString();
}

void CallReader::emitResourceString(uint32_t id) {
  if (place_ == Place::Summary) summary_.label(id);
  if (place_ == Place::Listing) property_.label(id);
}

void CallReader::emitSpecial(uint32_t kind) {
  const bool inSummary = place_ == Place::Summary;
  if (!inSummary && place_ != Place::Listing) return;
  switch (kind) {
    case SoSpecialTab:
      return inSummary ? summary_.tab() : property_.tab();
    case SoSpecialLineBreak:
      return inSummary ? summary_.lineBreak() : property_.lineBreak();
    case SoSpecialSeparator:
      return inSummary ? summary_.separator() : property_.separator();
    default:
      return;
  }
}

// Objects.

void CallReader::setObjectData(uint32_t selector, uint64_t a, uint64_t b) {
  // An object's range reaches one byte past its text, an attachment's doesn't.
  if (selector == SoObjectDataRange) {
    dataStart_ = a;
    dataLength_ = b - 1;
  } else if (selector == SoObjectDataExtent) {
    dataStart_ = a;
    dataLength_ = b - a;
  }
}

void CallReader::emitObject(const VcardObjectRecord &) {
  property_.object({dataStart_, dataLength_}, {});
}

}  // namespace px
