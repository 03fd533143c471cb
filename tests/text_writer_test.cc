// The text view of whole cards, compared with what stands in golden/.

#include <fstream>
#include <sstream>

#include "host/source/sniffer.h"
#include "host/writers/text_writer.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

std::string contents(const std::string &path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  return (std::stringstream() << file.rdbuf()).str();
}

std::string textOf(std::string_view card) {
  std::string text;
  TextWriter writer([&text](std::string_view piece) {
    EXPECT_LT(piece.size(), 20000U);  // pieces are of bounded size
    text += piece;
  });
  MemoryIo io(card);
  CardRun run(filter(), &io, &writer);
  EXPECT_EQ(run.open(sniffFormat(&io)), VcardOpenGood);
  run.readAll();
  writer.finish();
  return text;
}

TEST(TextWriter, Samples) {
  const std::string samples = PX_SAMPLES "/", golden = PX_SAMPLES "/../tests/golden/";
  for (const std::string name : {"agent.vcf", "calendar.vcs", "folded.vcf", "picture.vcf"}) {
    EXPECT_EQ(textOf(contents(samples + name)), contents(golden + name + ".txt")) << name;
  }
}

TEST(TextWriter, StrangeText) {
  EXPECT_EQ(textOf("BEGIN:VCARD\nNOTE:" + std::string(200000, 'x') + "\nEND:VCARD\n"),
            "Note" + std::string(22, ' ') + std::string(200000, 'x') + "\n");
  EXPECT_EQ(textOf("BEGIN:VCARD\nX\x1B[m:a\x7F\xC2\x9B\x9B!\xE2\x80\xAE\xFF\nEND:VCARD\n"),
            "X\uFFFD[m" + std::string(22, ' ') + "a\uFFFD\uFFFD›!\uFFFDÿ\n");
}

}  // namespace
}  // namespace px::test
