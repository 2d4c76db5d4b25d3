// The tool and files where there is POSIX: what is written where, what stays when something goes
// wrong.
#include <sys/xattr.h>

#include "tests/tool_support.h"

namespace {

TEST_F(ToolTest, TroubleWithTheOutputIsReported) {
  expectOneLine(run("-f 1252 -t utf-8 latin -o /dev/full"), "/dev/full: No space left");
  expectOneLine(run("-f 1252 -t utf-8 latin > /dev/full"), "standard output: No space left");
  write("long", std::string(100000, 'a'));
  EXPECT_EQ(run("-j 4 --job-size 500 -f utf-8 -t utf-16le long -o /dev/full").status, 2);
  expectOneLine(run("-f 1252 -t utf-8 --in-place latin /dev/null"), "/dev/null: is not a regular");
  expectOneLine(run("-f 1252 -t utf-8 /proc/self/mem -o result"), "mem: Input/output error");
  EXPECT_EQ(files(), "latin long utf8 ");
  for (const char* arguments : {"-f 1252 -t utf-8 latin", "--list", "--chart 932", "--help"}) {
    // The reader is gone before the tool writes: that is no trouble, unless the signal is ignored.
    const std::string writer = std::string(ENCCONV_TOOL " ") + arguments + "; echo $? > status; }";
    const ToolRun outcome = shell("{ sleep 0.1; " + writer + " | true");
    EXPECT_EQ(read("status"), "141\n") << arguments;  // 128 and SIGPIPE, as for other tools
    EXPECT_EQ(outcome.err, "") << arguments;
    const ToolRun ignored = shell("{ trap '' PIPE; sleep 0.1; " + writer + " | true");
    EXPECT_EQ(read("status"), "2\n") << arguments;
    expectOneLine(ignored, "standard output: ");
  }
}

TEST_F(ToolTest, ReplacesFilesInPlace) {
  write("good", "\xE9t\xE9\n");
  write("bad", "\x98\x98");
  write("ascii", "plain\n");
  for (int i = 0; i < 20; ++i) write("many" + std::to_string(i), std::string(100, '\xE9'));
  chmod(path("good").c_str(), 0640);
  const auto time = fs::file_time_type::clock::now() - std::chrono::hours(1000);
  for (const char* name : {"good", "ascii", "many0"}) fs::last_write_time(path(name), time);
  fs::create_symlink("good", path("link"));

  // 98 is a control character that 737 lacks.
  const ToolRun outcome = run("-f 1253 -t 737 --in-place=.old -j 4 bad link ascii many*");
  EXPECT_EQ(outcome.status, 1);
  expectOneLine(outcome, "bad: byte offset 0");
  EXPECT_EQ(read("bad"), "\x98\x98");
  EXPECT_FALSE(fs::exists(path("bad.old")));
  EXPECT_EQ(read("good"), "\xA0t\xA0\n");
  EXPECT_EQ(read("good.old"), "\xE9t\xE9\n");
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_GT(fs::last_write_time(path("good")), time);  // so that make and backups see it
  EXPECT_EQ(fs::last_write_time(path("good.old")), time);
  EXPECT_EQ(fs::status(path("good")).permissions(), fs::perms(0640));
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(read("many" + std::to_string(i)), std::string(100, '\xA0'));

  // A file whose text does not change is not touched.
  EXPECT_EQ(fs::last_write_time(path("ascii")), time);
  EXPECT_FALSE(fs::exists(path("ascii.old")));
  fs::last_write_time(path("good"), time);
  EXPECT_EQ(run("-f 737 -t 1253 --in-place --preserve-time good").status, 0);
  EXPECT_EQ(read("good"), "\xE9t\xE9\n");
  EXPECT_EQ(fs::last_write_time(path("good")), time);
}

// What a file is besides its text stays, or the file is left alone with a reason.
TEST_F(ToolTest, KeepsWhatAFileIsInPlace) {
  write("linked", "\xE9");
  fs::create_hard_link(path("linked"), path("twin"));
  write("saved", "\xE9");
  write("saved.old", "an older one");
  const ToolRun refused = run("-f 1252 -t utf-8 --in-place=.old linked twin saved latin");
  EXPECT_EQ(refused.status, 2);
  for (const char* part : {"encconv: linked: is one of 2 hard links", "encconv: twin: is one of 2",
                           "encconv: saved: ", "saved.old exists already"}) {
    EXPECT_TRUE(contains(refused.err, part)) << refused.err;
  }
  EXPECT_EQ(read("linked"), "\xE9");
  EXPECT_EQ(fs::hard_link_count(path("twin")), 2u);
  EXPECT_EQ(read("saved"), "\xE9");
  EXPECT_EQ(read("saved.old"), "an older one");
  EXPECT_EQ(read("latin"), "café\n");  // the others are converted
  EXPECT_EQ(files(), "latin latin.old linked saved saved.old twin utf8 ");

  // Read and write for the owner and for user 1, in the form of the kernel.
  const std::string list(
      "\2\0\0\0\1\0\6\0\xFF\xFF\xFF\xFF\2\0\6\0\1\0\0\0"
      "\4\0\4\0\xFF\xFF\xFF\xFF\x10\0\6\0\xFF\xFF\xFF\xFF"
      "\x20\0\0\0\xFF\xFF\xFF\xFF",
      44);
  const std::pair<const char*, std::string> attributes[] = {{"user.origin", "archive"},
                                                            {"system.posix_acl_access", list}};
  write("marked", "\xE9");
  for (const auto& [name, value] : attributes) {
    if (setxattr(path("marked").c_str(), name, value.data(), value.size(), 0) != 0) {
      GTEST_SKIP() << "no " << name << " on this file system";
    }
  }
  EXPECT_EQ(run("-f 1252 -t utf-8 --in-place marked").status, 0);
  EXPECT_EQ(read("marked"), "é");
  for (const auto& [name, value] : attributes) {
    std::string kept(value.size() + 1, 0);
    const ssize_t size = getxattr(path("marked").c_str(), name, kept.data(), kept.size());
    EXPECT_EQ(kept.substr(0, static_cast<std::size_t>(std::max<ssize_t>(size, 0))), value) << name;
  }
}

TEST_F(ToolTest, OneBadNameIsNotTheEnd) {
  fs::create_directory(path("folder"));
  write("folder/deep", "\xE9");
  const std::string trouble =
      "encconv: folder: is a directory; --recursive converts what is in it\n";
  const ToolRun shown = run("-f 1252 -t utf-8 folder latin");
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(shown.out, "café\n");
  EXPECT_EQ(shown.err, trouble);
  const ToolRun replaced = run("-f 1252 -t utf-8 --in-place folder missing latin");
  EXPECT_EQ(replaced.status, 2);
  EXPECT_EQ(replaced.err, trouble + "encconv: missing: No such file or directory\n");
  EXPECT_EQ(read("latin"), "café\n");

  // Names may hold anything but must not reach the terminal so.
  write("a\n\x1B[31m\u202Eb\x9B", "\xE9");
  const ToolRun odd = run("-f utf-8 -t utf-8 a* 'missing\ncc\u00E9'");
  EXPECT_EQ(odd.err, "encconv: missing\\ncc\u00E9: No such file or directory\n");
  const ToolRun stopped = run("-f utf-8 -t utf-8 a*");
  expectOneLine(stopped, "a\\n\\x1B[31m\\xE2\\x80\\xAEb\\x9B: byte offset 0");
}

TEST_F(ToolTest, GoesThroughDirectories) {
  fs::create_directories(path("tree/sub/deeper"));
  for (const char* name : {"a.txt", "b.bin", "sub/c.txt", "sub/deeper/a.txt"}) {
    write(std::string("tree/") + name, "\xE9");
  }
  fs::create_symlink("a.txt", path("tree/link.txt"));
  const auto texts = [&](const std::string& top) {
    return read(top + "/a.txt") + read(top + "/sub/c.txt") + read(top + "/sub/deeper/a.txt");
  };
  EXPECT_EQ(run("-f 1252 -t utf-8 -r --include 'c*' --include b.bin tree").out, "éé");
  // Into the tree itself, which is not gone through again; twice.
  for (int i = 0; i < 2; ++i) {
    const ToolRun into = run("-f 1252 -t utf-8 -r --include '*.txt' --output-dir tree/new tree");
    EXPECT_EQ(into.status, 0) << into.err;
    EXPECT_EQ(texts("tree/new"), "ééé");
    EXPECT_FALSE(fs::exists(path("tree/new/b.bin")) || fs::exists(path("tree/new/new")));
  }
  fs::remove_all(path("tree/new"));

  // The overlap is converted once, and the kept originals are not.
  EXPECT_EQ(run("-f 1252 -t utf-8 -r --in-place=.old tree tree/sub").status, 0);
  EXPECT_EQ(texts("tree"), "ééé");
  EXPECT_EQ(read("tree/sub/c.txt.old"), "\xE9");
  EXPECT_EQ(run("-f utf-8 -t 1252 -r --in-place=.old --include '*.old' tree").status, 2);
  EXPECT_EQ(read("tree/sub/c.txt.old"), "\xE9");
  EXPECT_TRUE(fs::is_symlink(path("tree/link.txt")));
}

TEST_F(ToolTest, ManyJobsNeedNoMoreDescriptorsThanThereAre) {
  for (int i = 0; i < 100; ++i) write("many" + std::to_string(i), std::string(200000, '\xE9'));
  const ToolRun outcome =
      shell("ulimit -n 24; " ENCCONV_TOOL " -f 1252 -t utf-8 --in-place -j 100 many*");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  for (int i = 0; i < 100; ++i) EXPECT_EQ(read("many" + std::to_string(i)).size(), 400000u);
}

TEST_F(ToolTest, WritesIntoADirectory) {
  fs::create_directory(path("from"));
  write("from/latin", "\xE8");
  expectOneLine(run("-f 1252 -t utf-8 --output-dir into latin from/latin"), "written twice");
  EXPECT_EQ(run("-f 1252 -t utf-8 --output-dir into -j 0 from/latin utf8").status, 0);
  EXPECT_EQ(read("into/latin"), "è");
  EXPECT_EQ(read("into/utf8"), "cafÃ©\n");
}

TEST_F(ToolTest, ReplacesTheOutputOnlyAtTheEnd) {
  write("target", "old");
  chmod(path("target").c_str(), 0600);
  fs::create_symlink("target", path("link"));
  EXPECT_EQ(run("-f 1252 -t utf-8 latin -o link").status, 0);
  EXPECT_EQ(read("target"), "café\n");
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(fs::status(path("target")).permissions(), fs::perms(0600));
  EXPECT_EQ(files(), "latin link target utf8 ");
  EXPECT_EQ(shell("umask 026; " ENCCONV_TOOL " -f 1252 -t utf-8 latin -o .new <&-").status, 0);
  EXPECT_EQ(fs::status(path(".new")).permissions(), fs::perms(0640));

  // Through a link that points to nothing yet, and into standard output by its name.
  fs::create_directory(path("folder"));
  fs::create_symlink("../.made", path("folder/.two"));
  fs::create_symlink("folder/.two", path(".one"));
  EXPECT_EQ(run("-f 1252 -t utf-8 latin -o .one").status, 0);
  EXPECT_EQ(read(".made"), "café\n");
  EXPECT_TRUE(fs::is_symlink(path(".one")) && fs::is_symlink(path("folder/.two")));
  EXPECT_EQ(run("-f 1252 -t utf-8 latin -o -").out, "café\n");
  EXPECT_TRUE(run("--chart 1252 --html -").out.starts_with("<!DOCTYPE html>"));
  fs::remove_all(path("folder"));
  EXPECT_EQ(files(), "latin link target utf8 ");

  // A signal leaves the old file and no temporary one.
  const ToolRun outcome = shell("mkfifo .pipe; sleep 60 > .pipe & writer=$!\n" ENCCONV_TOOL
                                " -f 1252 -t utf-8 .pipe -o target &\n"
                                "until ls target.* > .ls 2>&1; do sleep 0.05; done\n"
                                "kill -TERM $!; wait $!; echo $?; kill $writer; rm .pipe .ls");
  EXPECT_EQ(outcome.out, "143\n");
  EXPECT_EQ(read("target"), "café\n");
  EXPECT_EQ(files(), "latin link target utf8 ");

  // Nor does it behind more files than the signal's handler has places for.
  for (int i = 0; i < 300; ++i) write("many" + std::to_string(i), "\xE9");
  const ToolRun many = shell("mkfifo zzz; sleep 60 > zzz & writer=$!\n" ENCCONV_TOOL
                             " -f 1252 -t utf-8 --output-dir into many* zzz &\n"
                             "for try in $(seq 300); do\n"
                             "  [ $(ls into | wc -l) = 301 ] && break; sleep 0.1\n"
                             "done\n"
                             "kill -TERM $!; wait $!; echo $?; kill $writer\n"
                             "ls into | wc -l; ls into | grep zzz");
  EXPECT_EQ(many.out, "143\n300\n");

  // A signal that is ignored does nothing.
  const ToolRun ignored =
      shell("mkfifo .pipe; (trap '' TERM; exec " ENCCONV_TOOL
            " -f 1252 -t utf-8 .pipe -o target) &\n"
            "until ls target.* > .ls 2>&1; do sleep 0.05; done\n"
            "kill -TERM $!; timeout 5 sh -c 'printf a > .pipe'; wait $!; echo $?");
  EXPECT_EQ(ignored.out, "0\n");
  EXPECT_EQ(read("target"), "a");
}

}  // namespace
