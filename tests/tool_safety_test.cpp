#include <sys/stat.h>

#include <csignal>
#include <thread>

#include "test_files.h"

namespace tessa::testing {
namespace {

/// What a user can lose and what a hostile name or a full disk can do, tried with the tool itself.
class ToolSafety : public ToolTest {
 protected:
  ToolSafety() {
    SitFields fields = PlainSit();
    fields.Comment = "\x1B]0;title\x07 fine";
    fields.Memo = "a\nProblem: forged";
    Write("s.sit", EncodeSit(fields));
    Write("f.rti", EncodeSnapshot(SnapshotOf(2, 1, {{2732, 2932}})));
  }
  /// Runs a line of the shell in the test's folder, in which $T is the tool.
  Outcome Shell(const char* line) const {
    QProcess shell;
    shell.setWorkingDirectory(Path("."));
    shell.start(u"/bin/sh"_s, {u"-c"_s, QStringLiteral("T='" TESSA_BINARY_FOLDER "/tessatool'; ") +
                                            QString::fromUtf8(line)});
    EXPECT_TRUE(shell.waitForFinished(60000));
    return {shell.exitCode(), shell.readAllStandardOutput().toStdString(),
            shell.readAllStandardError().toStdString()};
  }
};

TEST_F(ToolSafety, OutputThatCannotBeWrittenIsAFailure) {
  for (const char* line : {"$T info s.sit > /dev/full", "$T info --json s.sit > /dev/full",
                           "$T --help > /dev/full", "$T info s.sit >&-"}) {
    const Outcome outcome = Shell(line);
    EXPECT_EQ(outcome.Status, 1) << line;
    EXPECT_THAT(outcome.Error, HasSubstr("standard output cannot be written")) << line;
  }
  // No message may end up in a file that got the number of a closed stream.
  EXPECT_EQ(Shell("$T export s.sit -o open.csv; $T export s.sit -o closed.csv >&- 2>&-; "
                  "$T export none.sit s.sit --folder . --to csv >&- 2>&-; "
                  "cmp open.csv closed.csv && cmp open.csv s.csv")
                .Status,
            0);
}

TEST_F(ToolSafety, TextsAndNamesReachATerminalHarmless) {
  const Outcome info = Run({"info", "@s.sit"});
  EXPECT_THAT(info.Out, AllOf(HasSubstr("\\x1b]0;title\\x07 fine"), Not(HasSubstr("\x1B")),
                              HasSubstr("a\\x0aProblem: forged")));
  const Outcome json = Run({"info", "--json", "@s.sit"});
  EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(json.Out))[u"Comment"_s]
                .toString()
                .toStdString(),
            "\x1B]0;title\x07 fine");
  for (const char* line : {"$T info \"$(printf 'a\\033\\nb.sit')\"",
                           "$T export s.sit -o \"$(printf 'a\\033\\nb')/x.png\"",
                           "$T export s.sit -o x.png --palette \"$(printf 'a\\033\\nb')\""}) {
    EXPECT_THAT(Shell(line).Error, AllOf(HasSubstr("a\\x1b\\x0ab"), Not(HasSubstr("\x1B"))))
        << line;
  }
}

TEST_F(ToolSafety, NamesThatAreNoTextOpenAndAreWrittenBeside) {
  const Outcome outcome = Shell(
      "d=$(printf 'd\\377'); n=$(printf 'n\\303\\377'); mkdir \"$d\" && cp s.sit \"$d/$n.sit\" && "
      "$T info \"$d/$n.sit\" && $T export \"$d/$n.sit\" --folder \"$d/out\" --to png && "
      "cd \"$d\" && $T export \"$n.sit\" -o \"$n.csv\" && test -s \"out/$n.png\" && "
      "test -s \"$n.csv\" && ls | wc -l && cd .. && rm -r \"$d\" && "
      "{ $T sound s.sit --folder \"$n\" 2> /dev/null; rmdir \"$n\"; }");
  EXPECT_EQ(outcome.Status, 0) << outcome.Error;
  EXPECT_THAT(outcome.Out, AllOf(HasSubstr("/d\\xff/n\\xc3\\xff.sit\n"), HasSubstr("\n3\n")));
}

TEST_F(ToolSafety, SignalsEndARunBetweenFilesAndAKillLeavesNoScraps) {
  const std::pair<const char*, int> cases[] = {
      {"INT", 130}, {"TERM", 143}, {"HUP", 129}, {"KILL", 137}};
  for (const auto& [signal, status] : cases) {
    // Far more work than there is time for; the signal comes when the first file is there.
    const std::string line =
        std::string(
            "mkdir in; for i in $(seq 300); do ln s.sit in/$i.sit; done; "
            "env --default-signal=INT $T export in/*.sit --folder out --to csv --jobs 1 & "
            "while ! test -s out/1.csv; do :; done; kill -") +
        signal +
        " $!; wait $!; s=$?; ls -A out | grep -v '[0-9]*.csv$'; "
        "for f in out/*; do cmp -s out/1.csv $f || echo $f; done; "
        "test $(ls out | wc -l) -lt 300 || echo all; rm -r in out; exit $s";
    const Outcome outcome = Shell(line.c_str());
    EXPECT_EQ(outcome.Status, status) << signal << outcome.Error;
    EXPECT_EQ(outcome.Out, "") << signal;
  }
}

TEST_F(ToolSafety, AnInterruptedCardDownloadFinishesTheImagesThatItBegan) {
  const Outcome outcome = Shell(
      "mkdir card to; for i in $(seq 400); do ln s.sit card/$i.sit; done; "
      "env --default-signal=INT $T card download card --to to --sit --bmp & "
      "while ! test -s to/10.bmp; do :; done; kill -INT $!; wait $!; s=$?; "
      "for f in to/*.sit; do cmp -s s.sit $f && test -s ${f%sit}bmp || echo bad $f; done; "
      "test $(ls to | wc -l) -lt 800 || echo bad: all; exit $s");
  EXPECT_EQ(outcome.Status, 130) << outcome.Error;
  EXPECT_THAT(outcome.Out, AllOf(HasSubstr("images downloaded to "), Not(HasSubstr("bad"))));
}

}  // namespace
}  // namespace tessa::testing
