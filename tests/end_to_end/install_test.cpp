// The installed library as others use it: `vantor` from its prefix, hosts and an application built
// elsewhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "support/Command.h"
#include "support/Notebook.h"
#include "support/TemporaryHome.h"

namespace {

namespace fs = std::filesystem;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;

TemporaryHome gHome;

CommandResult Finish(const std::vector<std::string>& inWords, const fs::path& inFolder = {}) {
    CommandOptions options;
    options.deadline = std::chrono::seconds(400);
    options.folder = inFolder;
    return RunCommand(inWords, options);
}

fs::path Prefix() {
    return gHome.Root() / "prefix";
}

std::string InstalledVantor() {
    return Prefix() / "bin/vantor";
}

// The library's folder, whatever this system calls it.
fs::path Libraries() {
    return Prefix() / VANTOR_LIBRARIES;
}

std::string Contents(const fs::path& inFile) {
    std::ifstream file(inFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Install : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        const auto result = Finish({"cmake", "--install", VANTOR_BUILD, "--prefix", Prefix()});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        // Built with the flags of the library, which asks for the sanitizers' functions.
        setenv("CC", C_COMPILER, 1);
        setenv("CXX", CXX_COMPILER, 1);
        for (const char* name : {"CFLAGS", "CXXFLAGS", "LDFLAGS"}) setenv(name, SANITIZERS, 1);
        setenv("PKG_CONFIG_PATH", (Libraries() / "pkgconfig").c_str(), 1);
    }
    void SetUp() override { fs::create_directories(mProject); }
    void TearDown() override {
        Finish({InstalledVantor(), "quit", "Calverin"});
        fs::remove_all(mProject);
    }

    static void ExpectRuns(const std::vector<std::string>& inWords, const fs::path& inFolder = {}) {
        const auto result = Finish(inWords, inFolder);
        EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
    }
    // A project that has nothing but the package.
    void BuildProject() const {
        ExpectRuns({"cmake", "-B", "build", "-DCMAKE_PREFIX_PATH=" + Prefix().string(),
                    "-DCMAKE_INSTALL_PREFIX=" + (mProject / "installed").string()},
                   mProject);
        ExpectRuns({"cmake", "--build", "build"}, mProject);
    }
    void Copy(const std::string& inFromExamples) const {
        fs::copy(fs::path(VANTOR_SOURCE) / "examples" / inFromExamples, mProject,
                 fs::copy_options::recursive);
    }
    // A disc written by a host that was built here; it is in the drive still.
    static void ExpectDisc() {
        const fs::path tray = gHome.Root() / "data/vantor/drives/image/tray";
        const auto listed = Finish({"isoinfo", "-R", "-f", "-i", tray / "burn_disc.c.iso"});
        EXPECT_THAT(listed.output, HasSubstr("/burn_disc.c")) << listed.errors;
        fs::remove_all(tray);
    }

    const fs::path mProject = gHome.Root() / "project";
};

TEST_F(Install, VantorBurnsADiscWithTheRecorderOfItsPrefix) {
    Copy("burn_disc.c");
    const std::string image = gHome.Root() / "disc.iso";
    const auto result = Finish({InstalledVantor(), "burn", mProject, "--to", image});
    EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
    const auto running = Finish({InstalledVantor(), "launch", "Fv8k", "--json"});
    ASSERT_EQ(running.exitCode, 0) << running.errors;
    const auto pid = running.output.substr(running.output.find("\"pid\":") + 6);
    const auto program = fs::read_symlink("/proc/" + std::to_string(std::stoi(pid)) + "/exe");
    EXPECT_EQ(program, Prefix() / "share/vantor/Applications/Calverin.app/Contents/Linux/Calverin");
    const auto listed = Finish({"isoinfo", "-R", "-f", "-i", image});
    EXPECT_THAT(listed.output, HasSubstr("/project/burn_disc.c"));
}

TEST_F(Install, HostBuiltWithThePackageFindsTheRecorderBesideTheLibrary) {
    Copy("burn_disc.c");
    std::ofstream(mProject / "CMakeLists.txt")
        << "cmake_minimum_required(VERSION 3.25)\n"
           "project(host LANGUAGES C)\n"
           "find_package(VantorLib 1.0 REQUIRED)\n"
           "add_executable(burn_disc burn_disc.c)\n"
           "target_link_libraries(burn_disc VantorLib::vantor)\n";
    BuildProject();
    ExpectRuns({"build/burn_disc", "burn_disc.c"}, mProject);
    ExpectDisc();
}

TEST_F(Install, HostIsBuiltWithOneCommandAndPkgConfig) {
    Copy("burn_disc.c");
    ExpectRuns({"sh", "-c",
                "$CC $CFLAGS burn_disc.c -o burn_disc $(pkg-config --cflags --libs vantor) "
                "-Wl,-rpath,$(pkg-config --variable=libdir vantor)"},
               mProject);
    ExpectRuns({"./burn_disc", "burn_disc.c"}, mProject);
    ExpectDisc();
}

TEST_F(Install, HostFindsTheLibraryAtRunTimeOrDoesWithout) {
    Copy("late_host.c");
    ExpectRuns({"sh", "-c", "$CC $CFLAGS late_host.c -o late_host $(pkg-config --cflags vantor)"},
               mProject);
    const auto without = Finish({"./late_host"}, mProject);
    EXPECT_EQ(without.exitCode, 1);
    EXPECT_THAT(without.errors, HasSubstr("no discs here: libvantor.so.1"));
    const auto with =
        Finish({"env", "LD_LIBRARY_PATH=" + Libraries().string(), "./late_host"}, mProject);
    EXPECT_EQ(with.output, "Discs can be written.\n") << with.errors;
}

TEST_F(Install, ApplicationBuiltWithThePackageAnswers) {
    Copy("notebook");
    BuildProject();
    ExpectRuns({"cmake", "--install", "build"}, mProject);
    const fs::path bundle = mProject / "installed/share/vantor/Applications/Notebook.app";
    const Notebook notebook(InstalledVantor(), bundle);
    EXPECT_EQ(fs::read_symlink("/proc/" + std::to_string(notebook.Pid()) + "/exe"),
              bundle / "Contents/Linux/Notebook");
    notebook.Send("crel", "kocl:type(note), prdt:{ pnam:\"Elsewhere\" }");
    EXPECT_EQ(notebook.Get({"pnam", "of", "note", "1"}), "'utf8'(\"Elsewhere\")");
}

TEST_F(Install, LibrariesHaveTheNameOfTheirVersion) {
    for (const std::string name : {"libvantor.so", "libvantorplatform.so"}) {
        const auto result = Finish({"objdump", "-p", Libraries() / name});
        EXPECT_THAT(result.output, ContainsRegex("SONAME +" + name + ".1\n"));
    }
}

// Nothing that was installed leads back to where it was built.
TEST_F(Install, KnowsNothingOfTheFolderItWasBuiltIn) {
    for (const std::string name :
         {"bin/vantor", "libexec/vantor/compile_resources",
          "share/vantor/Applications/Calverin.app/Contents/Linux/Calverin"}) {
        const auto result = Finish({"objdump", "-p", Prefix() / name});
        EXPECT_THAT(result.output, ContainsRegex("RUNPATH +.ORIGIN/"));
        EXPECT_EQ(result.output.find(VANTOR_BUILD), std::string::npos);
    }
    for (const auto& file : fs::directory_iterator(Libraries() / "cmake/VantorLib"))
        EXPECT_EQ(Contents(file.path()).find(VANTOR_SOURCE), std::string::npos) << file.path();
}

}  // namespace
