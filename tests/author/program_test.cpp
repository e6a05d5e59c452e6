// The program itself: its words, its exit codes, and what it prints where.
#include "author/program.h"
#include "author/command_line.h"
#include "common/version.h"
#include "tests/author/Catalogue.h"
#include "tests/author/RecordedConsole.h"
#include "tests/author/TemplateOnDisk.h"
#include "tests/author/Tool.h"

using author::toUtf8;

TEST_CASE("the program tells of itself and its version") {
  const Tool tool;
  const Tool::Outcome help = tool.run(L"--help");
  CHECK(help.code == 0);
  CHECK(help.output == toUtf8(author::usageText));
  CHECK(help.errors.empty());
  const Tool::Outcome version = tool.run(L"--version");
  CHECK(version.code == 0);
  CHECK(version.output == "quillet-template " QUILLET_VERSION_TEXT "\n");
}

TEST_CASE("a command that is not understood ends the program with 2") {
  const Tool tool;
  const Tool::Outcome outcome = tool.run(L"chekc");
  CHECK(outcome.code == 2);
  CHECK(outcome.output.empty());
  CHECK(outcome.errors ==
        "quillet-template: There is no command \"chekc\".\n"
        "quillet-template --help tells what there is.\n");
}

TEST_CASE("a template without fault ends the program with 0") {
  const Tool tool;
  tool.disk.writeFile(L"Gr\u00FCn\\gr\u00FCn.dwt",
                      "<!-- #BeginEditable \"b\" --><!-- #EndEditable -->");
  const Tool::Outcome outcome = tool.run(L"check \"Gr\u00FCn\"");
  CHECK(outcome.errors.empty());
  CHECK(outcome.output ==
        "gr\u00FCn\n"
        "  file         Gr\u00FCn\\gr\u00FCn.dwt\n"
        "  description  <not available>\n"
        "  preview      gr\u00FCn.dwt, the template's own page\n"
        "  notes        gr\u00FCn.dwt\n"
        "  theme        none\n"
        "  regions      b\n"
        "\n"
        "1 template and 0 themes: no finding.\n");
  CHECK(outcome.code == 0);
}

TEST_CASE("a finding ends the program with 1 and stands with file and line") {
  const Tool tool;
  tool.disk.writeFile(L"T\\t.dwt",
                      "<!-- #BeginEditable \"b\" -->\n<img src=x.gif><!-- #EndEditable -->");
  const Tool::Outcome outcome = tool.run(L"check T/");
  CHECK(outcome.code == 1);
  CHECK(
      outcome.output ==
      "t\n"
      "  file         T\\t.dwt\n"
      "  description  <not available>\n"
      "  preview      t.dwt, the template's own page\n"
      "  notes        t.dwt\n"
      "  theme        none\n"
      "  regions      b\n"
      "\n"
      "T\\t.dwt:2: The address \"x.gif\" leads to no file of the template folder. [link-missing]\n"
      "    What happens: Pages of the template show a gap or a broken link there.\n"
      "    What to do:   Put the file where the address says, or take the link out.\n"
      "\n"
      "1 template and 0 themes: 1 finding.\n");
}

TEST_CASE("findings are told as JSON") {
  const Tool tool;
  tool.disk.writeFile(L"T\\t.dwt", "<!-- #BeginEditable \"b\" --><!-- #EndEditable -->");
  tool.disk.writeFile(L"T\\quillet.ini", "[t]\r\nTheme=glass 1\r\n");
  const Tool::Outcome outcome = tool.run(L"check --json T");
  CHECK(outcome.code == 1);
  CHECK(outcome.output ==
        "{\n"
        "  \"program\": \"quillet-template\",\n"
        "  \"version\": \"" QUILLET_VERSION_TEXT
        "\",\n"
        "  \"folders\": [\n"
        "    {\n"
        "      \"folder\": \"T\",\n"
        "      \"templates\": [\n"
        "        {\n"
        "          \"title\": \"t\",\n"
        "          \"file\": \"t.dwt\",\n"
        "          \"description\": \"<not available>\",\n"
        "          \"preview\": \"t.dwt\",\n"
        "          \"previewIsPicture\": false,\n"
        "          \"previewWidth\": 0,\n"
        "          \"previewHeight\": 0,\n"
        "          \"notes\": \"t.dwt\",\n"
        "          \"theme\": null,\n"
        "          \"regions\": [\n"
        "            \"b\"\n"
        "          ]\n"
        "        }\n"
        "      ]\n"
        "    }\n"
        "  ],\n"
        "  \"themes\": [],\n"
        "  \"findings\": [\n"
        "    {\n"
        "      \"rule\": \"theme-flags-short\",\n"
        "      \"file\": \"T\\\\quillet.ini\",\n"
        "      \"line\": 2,\n"
        "      \"what\": \"The theme's flags have fewer than two characters: glass 1\",\n"
        "      \"effect\": \"The line is ignored, and the template is copied without a theme.\",\n"
        "      \"advice\": \"Write the name, one blank and four digits, as in \\\"nightferry "
        "1111\\\".\"\n"
        "    }\n"
        "  ],\n"
        "  \"fine\": false\n"
        "}\n");
}

TEST_CASE("a template's picture and a theme are told in words and as JSON") {
  Catalogue catalogue;
  const std::vector<std::wstring> folders = {catalogue.quay.folder, catalogue.quay.disk / L"glass"};
  RecordedConsole& console = catalogue.console;
  CHECK(author::runProgram({L"check", folders[0], folders[1]}, console) == author::fine);
  CHECK(holds(toUtf8(console.printed), "  preview      previewquay.gif, a picture of 201 x 100\n"));
  CHECK(holds(toUtf8(console.printed), "  theme        glass, with the flags 1011\n"));
  console.printed.clear();
  CHECK(author::runProgram({L"check", L"--json", folders[0], folders[1]}, console) == author::fine);
  const std::string told = toUtf8(console.printed);
  CHECK(holds(
      told,
      "          \"theme\": {\n            \"name\": \"glass\",\n            \"flags\": 4113\n"
      "          },\n"));
  CHECK(holds(told, "\"name\": \"glass\",\n      \"title\": \"Sea Glass\"\n    }\n  ],\n"));
}

TEST_CASE("a folder that is not there ends the program with 1 and a sentence") {
  const Tool tool;
  const Tool::Outcome outcome = tool.run(L"check gone");
  CHECK(outcome.code == 1);
  CHECK(outcome.output.empty());
  CHECK(outcome.errors == "quillet-template: gone: There is no such folder.\n");
  tool.disk.writeFile(L"file", "x");
  CHECK(tool.run(L"check file").errors == "quillet-template: file: This is no folder.\n");
  CHECK(tool.run(L"check --json gone").output ==
        "{\n"
        "  \"program\": \"quillet-template\",\n"
        "  \"version\": \"" QUILLET_VERSION_TEXT
        "\",\n"
        "  \"error\": \"gone: There is no such folder.\",\n"
        "  \"fine\": false\n"
        "}\n");
}

TEST_CASE("a long run tells its steps") {
  const TemplateOnDisk quay;
  RecordedConsole console;
  CHECK(author::runProgram({L"check", quay.folder}, console) == author::fine);
  CHECK(console.steps == Told{L"Looking through " + quay.folder + L"..."});
}

TEST_CASE("a run that is stopped ends with 1 and says so") {
  const TemplateOnDisk quay;
  RecordedConsole console;
  console.goesOn = 0;
  CHECK(author::runProgram({L"check", quay.folder}, console) == author::findingsOrFailure);
  CHECK(console.printed.empty());
  CHECK(console.complained == L"quillet-template: Operation Cancelled.\n");
}
