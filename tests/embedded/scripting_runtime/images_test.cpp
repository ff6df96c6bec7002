#include "embedded/scripting_runtime/image_file.hpp"
#include "platform/scripting_runtime/interrupt_mode.hpp"
#include "tests/embedded/scripting_runtime/runtime_fixture.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace embedded::scripting_runtime {

namespace {

/// Bytes from hexadecimal digits.
std::string bytes(const std::string& digits) {
  std::string result;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    result += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  return result;
}

// PNG files of one row with two pixels.
const char* const gray_png =
    "89504e470d0a1a0a0000000d4948445200000002000000010800000000d14920560000000b4944415478da63603f010000d900d0440255db"
    "0000000049454e44ae426082";
/// (10, 20, 30) without transparency, and red that can't be seen.
const char* const transparent_png =
    "89504e470d0a1a0a0000000d4948445200000002000000010806000000f4227f8a000000114944415478da63e01291fbff9f818101000a90"
    "023bd97d8c770000000049454e44ae426082";
/// A palette of (1, 2, 3) and (250, 251, 252), of which the second is first.
const char* const palette_png =
    "89504e470d0a1a0a0000000d4948445200000002000000010803000000c3fc8fb800000006504c5445010203fafbfcfd5ee6a30000000b49"
    "44415478da63606400000005000242c2449f0000000049454e44ae426082";
/// Announces 60000 x 60000 pixels and holds none of them.
const char* const huge_png =
    "89504e470d0a1a0a0000000d494844520000ea600000ea6008020000000fb0e2150000000c49444154789c6360a03d00000064000186643c"
    "350000000049454e44ae426082";

class Images : public RuntimeTest {
 protected:
  /// The value of "imread" for a file of these bytes.
  std::string read(const std::string& contents) {
    return value_of("imread('" + folder.write("image", contents).string() + "')");
  }
  std::string error(const std::string& file) { return error_of("imread('" + (folder.path() / file).string() + "')"); }

  kinemo::test::TemporaryFolder folder;
};

}  // namespace

// Two rows of three pixels, by columns and then by colours.
TEST_F(Images, TrueColourIsRowsByColumnsByThree) {
  const std::string pixels = {1, 2, 3, 11, 12, 13, 21, 22, 23, 31, 32, 33, 41, 42, 43, 51, 52, 53};
  folder.write("six.ppm", "P6 3 2 255\n" + pixels);
  const std::string image = "imread('" + (folder.path() / "six.ppm").string() + "')";
  EXPECT_EQ(value_of("size(" + image + ")"), "[2 3 3]");
  EXPECT_EQ(value_of("class(" + image + ")"), "'uint8'");
  EXPECT_EQ(value_of("double(reshape(" + image + ", 2, 9))"), "[1 11 21 2 12 22 3 13 23;31 41 51 32 42 52 33 43 53]");
}

TEST_F(Images, GrayIsRowsByColumns) {
  EXPECT_EQ(read(bytes(gray_png)), "uint8([7 200])");
  EXPECT_EQ(read(std::string("P5 1 3 255\n") + '\1' + '\2' + '\3'), "uint8([1;2;3])");
}

TEST_F(Images, TransparencyShowsWhiteAndPalettesAreResolved) {
  EXPECT_EQ(read(bytes(transparent_png)), "uint8([1x2x3:10 255 20 255 30 255])");
  EXPECT_EQ(read(bytes(palette_png)), "uint8([1x2x3:250 1 251 2 252 3])");
}

TEST_F(Images, GrayIsKnownByTheHeadOfAFile) {
  EXPECT_TRUE(is_gray_image(bytes("ffd8ffe000040000ffffc0000b080001000101")));
  EXPECT_TRUE(is_gray_image(bytes("ffd8ffc4000400ffffc2000b080001000101")));
  EXPECT_FALSE(is_gray_image(bytes("ffd8ffe000040000ffc0001108000100010300")));
  EXPECT_FALSE(is_gray_image(bytes("ffd8ffe0ffff")));
  EXPECT_FALSE(is_gray_image(bytes("89504e470d0a1a0a")));
  EXPECT_FALSE(is_gray_image("P6 1 1 255\n"));
  EXPECT_FALSE(is_gray_image(""));
}

TEST_F(Images, TheEndOfAFileIsMissed) {
  const std::string scan = "ffd8ffe1000affdaff00ffd9ffc0ffda0000ff00";  // a small image in a segment, then the image
  EXPECT_TRUE(ends_too_early(bytes(scan)));
  EXPECT_FALSE(ends_too_early(bytes(scan + "ffd9")));
  EXPECT_FALSE(ends_too_early(bytes(gray_png)));
  EXPECT_TRUE(ends_too_early(bytes("89504e470d0a1a0affffffff49444154")));
  EXPECT_FALSE(ends_too_early("P6 1 1 255\n")) << "not known of this kind";
}

TEST_F(Images, WhatCannotBeReadIsAnErrorThatNamesTheFile) {
  const auto fails = [](const std::string& name) {
    return testing::MatchesRegex("CannotReadImage\\([^,]*/" + name + ", .*\\)");
  };
  folder.write("text.png", "no image at all");
  folder.write("short.png", bytes(gray_png).substr(0, 40));
  folder.write("cut.png", bytes(gray_png).substr(0, bytes(gray_png).size() - 12));
  folder.write("empty.png", "");
  ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
  for (const char* name : {"missing.png", "text.png", "short.png", "cut.png", "empty.png", "pipe"})
    EXPECT_THAT(error(name), fails(name));
  folder.write("huge.png", bytes(huge_png));
  EXPECT_THAT(error("huge.png"), testing::StartsWith("ArrayTooLarge(60000x60000x3"));
  EXPECT_EQ(error_of("imread(5)"), "array:NotText(double)");
}

TEST_F(Images, InterruptWaitsWhileItIsSwitchedOff) {
  request_interrupt(true);
  {
    const utInterruptMode off(utInterruptMode::OFF);
    EXPECT_FALSE(kmf::interrupt_requested());
    const utInterruptMode on(utInterruptMode::ON);
    EXPECT_TRUE(kmf::interrupt_requested());
  }
  EXPECT_TRUE(kmf::interrupt_requested());
}

}  // namespace embedded::scripting_runtime
