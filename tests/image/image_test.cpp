// Profiles embedded in JPEG, PNG, TIFF and WebP images made by ImageMagick, and damaged images.
#include "image/embedded_profile.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

// Extracts the image's profile and checks its bytes, also as read from memory (the fuzzer's way).
void expectExtracts(const std::string& image, const std::string& profile) {
    const std::string out = image + ".icc";
    const CliResult extracted = runCli({"extract", image, out});
    EXPECT_EQ(extracted.exitCode, 0) << extracted.out << extracted.err;
    EXPECT_EQ(readBytes(out), readBytes(profile)) << image;
    const Bytes file = readBytes(image);
    const icEmbeddedProfile fromMemory = readEmbeddedProfile(std::span(file));
    EXPECT_EQ(fromMemory.status, icEmbeddedStatus::found);
    EXPECT_EQ(fromMemory.bytes, readBytes(profile)) << image;
}

// The command fails with exactly `err` on standard error and writes nothing.
void expectRefused(const std::vector<std::string>& args, const std::string& err) {
    const std::string out = (scratchDir() / "refused.icc").string();
    std::vector<std::string> withOutput = args;
    if (args.front() != "info")
        withOutput.push_back(out);
    const CliResult result = runCli(withOutput);
    EXPECT_EQ(result.exitCode, 1) << args[0] << " " << args[1];
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, err);
    EXPECT_FALSE(fs::exists(out));
}

} // namespace

TEST(EmbeddedProfile, EveryContainerOpensAsTheProfileAndExtractsIt) {
    ASSERT_TRUE(fs::exists(kSrgb));
    for (const char* ext : {".jpg", ".png", ".tif", ".webp"}) {
        const std::string image = makeImage(std::string("srgb") + ext, kSrgb);
        ASSERT_FALSE(image.empty()) << "convert cannot write " << ext;
        for (const char* command : {"info", "dump"}) {
            const CliResult profile = runCli({command, kSrgb}), shown = runCli({command, image});
            EXPECT_EQ(shown.exitCode, profile.exitCode) << ext;
            EXPECT_EQ(shown.out, profile.out) << command << ext;
            EXPECT_EQ(profile.err + shown.err, "") << command << ext;
        }
        expectExtracts(image, kSrgb);
    }
}

TEST(EmbeddedProfile, JpegProfileOverSeveralApp2SegmentsExtractsWhole) {
    ASSERT_GT(fs::file_size(kCmyk), 65519u * 2); // at least three segments
    const std::string image = makeImage("cmyk.jpg", kCmyk, "-colorspace CMYK");
    ASSERT_FALSE(image.empty());
    expectExtracts(image, kCmyk);
}

TEST(EmbeddedProfile, ImagesWithoutASoundProfileSaySoAndWriteNothing) {
    const auto box = [](const std::string& text) { return "--- info | Veltrino\n" + text + "\n"; };
    const std::string bare = makeImage("bare.png");
    ASSERT_FALSE(bare.empty());
    for (const char* command : {"info", "extract"})
        expectRefused({command, bare}, box(bare + " holds no ICC profile."));

    // Cut inside the profile; and a profile whose header has lost its magic number.
    const std::string whole = makeImage("whole.jpg", kSrgb);
    ASSERT_FALSE(whole.empty());
    const Bytes jpeg = readBytes(whole);
    const std::string cut =
        writeBytes(scratchDir() / "cut.jpg", Bytes(jpeg.begin(), jpeg.begin() + 5000));
    Bytes tiff = readBytes(makeImage("magic.tif", kSrgb));
    const std::string magic = "acsp";
    const auto at = std::search(tiff.begin(), tiff.end(), magic.begin(), magic.end());
    ASSERT_NE(at, tiff.end());
    *at = 'x';
    const std::string damaged = writeBytes(scratchDir() / "damaged.tif", tiff);
    for (const std::string& image : {cut, damaged})
        for (const char* command : {"info", "extract"})
            expectRefused({command, image}, box("Error in reading ICC profile: " + image + "."));

    expectRefused({"extract", kSrgb},
                  "veltrino-cli: " + kSrgb + " is no JPEG, PNG, TIFF or WebP image\n");
    // Save As writes a profile file, never over the image it came from.
    const Bytes before = readBytes(whole);
    const CliResult overImage = runCli({"save", whole, whole});
    EXPECT_EQ(overImage.exitCode, 1);
    EXPECT_EQ(overImage.out,
              "--- stop | Veltrino\nError in writing a new profile. Errcode: -100.\n");
    EXPECT_EQ(readBytes(whole), before);
}
