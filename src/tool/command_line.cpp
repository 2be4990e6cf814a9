#include "tool/command_line.h"

#include <CLI/CLI.hpp>
#include <QLoggingCategory>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "core/plain_line.h"
#include "core/program_version.h"
#include "tool/card_command.h"
#include "tool/export_command.h"
#include "tool/frames_command.h"
#include "tool/info_command.h"
#include "tool/note_command.h"
#include "tool/sheet_command.h"
#include "tool/sound_command.h"
#include "tool/streams.h"
#include "tool/thumbnail_command.h"
#include "tool/transfer_command.h"
#include "tool/visible_command.h"

namespace tessa {
namespace {

/// Passes on what the program itself logs, which is nothing unless it was asked for.
void PrintOwnMessages(QtMsgType /*type*/, const QMessageLogContext& context,
                      const QString& message) {
  if (QLatin1String(context.category).startsWith(QLatin1String("tessa."))) {
    std::fprintf(stderr, "%s\n", PlainUtf8(message).c_str());
  }
}

CLI::App* AddInfo(CLI::App& tool, InfoCall& call) {
  CLI::App* const command = tool.add_subcommand("info", "Say what is known about images");
  command->add_option("FILE", call.Files, "Images")->required();
  command->add_flag("--frames", call.Frames, "List the frames of snapshots and sequences too");
  command->add_flag("--json", call.Json, "One JSON object, or an array for several images");
  return command;
}

CLI::App* AddExport(CLI::App& tool, ExportCall& call) {
  CLI::App* const command =
      tool.add_subcommand("export", "Write images as bmp, png, jpg, csv, tif or txi");
  command->add_option("FILE", call.Files, "Images")->required();
  command->add_option("-o,--output", call.Out, "File to write; its ending decides");
  command->add_option("--folder", call.Folder, "Folder to write into");
  command->add_option("--to", call.To, "Ending of the files in the folder");
  command->add_option("--palette", call.Palette, "Palette by name or number");
  auto* const bar = command->add_flag("--bar", call.Bar, "With the palette bar");
  auto* const composite =
      command->add_flag("--composite", call.Composite, "With palette bar and visible-light picture")
          ->excludes(bar);
  command->add_flag("--visible", call.Visible, "The visible-light picture alone")
      ->excludes(bar)
      ->excludes(composite);
  command->add_flag("--reverse", call.Reverse, "Turn the palette round");
  command->add_option("--range", call.Range,
                      "Temperatures that span the palette: stored, image or LOW:HIGH");
  command->add_option("--unit", call.Unit, "C or F, for --range and csv")
      ->transform(CLI::IsMember({"C", "F"}, CLI::ignore_case));
  command->add_flag("--force", call.Force, "Replace files that are there already");

  command->add_option("--frame", call.Frame, "Frame of a snapshot or sequence, from 1")
      ->check(CLI::Range(1, 32767));
  command->add_option("--jobs", call.Jobs, "Images to work on at once")->check(CLI::Range(1, 1024));
  return command;
}

CLI::App* AddFrames(CLI::App& tool, FramesCall& call) {
  CLI::App* const command =
      tool.add_subcommand("frames", "Write frames of a snapshot or sequence as single files");
  command->add_option("FILE", call.File, "Snapshot or sequence")->required();
  command->add_option("--prefix", call.Prefix, "Start of the files' names")->required();
  command->add_option("--to", call.To, "Their ending: bmp, txi, csv, tif or png")
      ->required()
      ->check(CLI::IsMember({"bmp", "txi", "csv", "tif", "png"}));
  command->add_option("--frames", call.Frames, "Which, such as 1-10,15; all if left out");
  command->add_option("--folder", call.Folder, "Folder to write into");
  command->add_option("--palette", call.Palette, "Palette by name or number");
  command->add_flag("--reverse", call.Reverse, "Turn the palette round");
  command->add_option("--range", call.Range,
                      "One range for all: stored, image (extremes over all frames) or LOW:HIGH");
  command->add_option("--unit", call.Unit, "C or F, for --range and csv")
      ->transform(CLI::IsMember({"C", "F"}, CLI::ignore_case));
  command->add_flag("--force", call.Force, "Replace files that are there already");
  return command;
}

CLI::App* AddVisible(CLI::App& tool, VisibleCall& call) {
  CLI::App* const command =
      tool.add_subcommand("visible", "Write the visible-light JPEG inside a SIT image");
  command->add_option("FILE", call.File, "SIT image")->required();
  command->add_option("-o,--output", call.Out, "JPEG to write")->required();
  command->add_flag("--force", call.Force, "Replace a file that is there already");
  return command;
}

CLI::App* AddSound(CLI::App& tool, SoundCall& call) {
  CLI::App* const command =
      tool.add_subcommand("sound", "Write the sound notes of images as wave files");
  command->add_option("IMAGE", call.Images, "SIT images")->required();
  auto* const soundOut = command->add_option("-o,--output", call.Out, "Wave file to write");
  command->add_option("--folder", call.Folder, "Folder to write IMAGE.wav into")
      ->excludes(soundOut);
  command->add_flag("--force", call.Force, "Replace files that are there already");
  return command;
}

CLI::App* AddEmbed(CLI::App& tool, EmbedCall& call) {
  CLI::App* const command = tool.add_subcommand("embed", "Put a sound note into a SIT image");
  command->add_option("IMAGE", call.Image, "SIT image")->required();
  command->add_option("--sound", call.Sound,
                      "Sound of the camera's kind or PCM wave; else the one that belongs "
                      "beside the image");
  auto* const embedOut = command->add_option("-o,--output", call.Out, "SIT image to write");
  command->add_flag("--in-place", call.InPlace, "Change IMAGE itself")->excludes(embedOut);
  command->add_flag("--force", call.Force, "Replace a file that is there already");
  return command;
}

CLI::App* AddThumbnail(CLI::App& tool, ThumbnailCall& call) {
  CLI::App* const command =
      tool.add_subcommand("thumbnail", "Write what the browser's tile shows as PNG");
  command->add_option("IMAGE", call.Image, "Image")->required();
  command->add_option("-o,--output", call.Out, "PNG file to write")->required();
  command->add_option("--size", call.Size, "Longest side in pixels; 0: as it is, with a palette")
      ->check(CLI::Range(0, ThumbnailCall::kLargestSize));
  command->add_option("--palette", call.Palette, "Palette by name or number");
  command->add_flag("--force", call.Force, "Replace a file that is there already");
  return command;
}

CLI::App* AddNote(CLI::App& tool, NoteCall& call) {
  CLI::App* const command =
      tool.add_subcommand("note", "Show or change comment and memo of an image");
  command->add_option("IMAGE", call.Image, "SIT or TMP image")->required();
  command->add_option("--comment", call.Comment, "New comment; \"none\" clears it");
  command->add_option("--memo", call.Memo, "New memo; \"none\" clears it");
  command->add_flag("--json", call.Json, "One JSON object");
  return command;
}

CLI::App* AddSheet(CLI::App& tool, SheetCall& call) {
  CLI::App* const command =
      tool.add_subcommand("sheet", "Put pictures of images into a PDF, ten to a page");
  command->add_option("FILE", call.Files, "Images")->required();
  command->add_option("-o,--output", call.Out, "PDF file to write");
  command->add_option("--printer", call.Printer, "Printer of the system to print on");
  command->add_option("--heading", call.Heading, "Heading of every page; else the folder");
  command->add_option("--palette", call.Palette, "Palette by name or number");
  command->add_flag("--force", call.Force, "Replace a file that is there already");
  return command;
}

/// "copy" and "move" take the same.
CLI::App* AddBringing(const char* name, const char* description, CLI::App& tool, BringCall& call) {
  CLI::App* const command = tool.add_subcommand(name, description);
  command->add_option("FILE", call.Files, "Images")->required();
  command->add_option("--to", call.To, "Folder that they go to")->required();
  command->add_flag("--embed-sounds", call.EmbedSounds,
                    "Put the sounds into the SIT images instead of beside them");
  auto* const replace =
      command->add_flag("--replace", call.Replace, "Replace files of the same name");
  command->add_flag("--skip", call.Skip, "Leave out files whose name is taken")->excludes(replace);
  return command;
}

/// The delete commands ask no question; this says that none is missed.
void AddYes(CLI::App& command) {
  command
      .add_flag_function(
          "--yes", [](std::int64_t) {}, "Delete without a question")
      ->required();
}

CLI::App* AddDelete(CLI::App& tool, std::vector<std::string>& files) {
  CLI::App* const command = tool.add_subcommand("delete", "Delete images and their sound files");
  command->add_option("FILE", files, "Images")->required();
  AddYes(*command);
  return command;
}

/// A command below "card".
CLI::App* AddCard(const char* name, const char* description, CLI::App& card, std::string& folder) {
  CLI::App* const command = card.add_subcommand(name, description);
  command->add_option("FOLDER", folder, "Where the card is")->required();
  return command;
}

CLI::App* AddCardList(CLI::App& card, CardListCall& call) {
  CLI::App* const command = AddCard("list", "List its folders and images", card, call.Card);
  command->add_flag("--json", call.Json, "One JSON object");
  return command;
}

CLI::App* AddCardDownload(CLI::App& card, CardDownloadCall& call) {
  CLI::App* const command = AddCard("download", "Bring its images into a folder", card, call.Card);
  command->add_option("--to", call.To, "Folder that they go to")->required();
  command->add_option("--folder", call.Folder, "The card's folder; all if left out");
  command->add_flag("--sit", call.Sit, "The images as they are");
  command->add_flag("--bmp", call.Bmp, "Pictures as bitmaps");
  command->add_flag("--jpg", call.Jpg, "Pictures as JPEG files");
  command->add_option("--quality", call.Quality, "Quality of these, 5 to 100; else 95");
  command->add_option("--scale", call.Scale,
                      "Temperatures that span the palette: camera, auto or LO:HI");
  command->add_option("--unit", call.Unit, "C or F, for --scale and the texts")
      ->transform(CLI::IsMember({"C", "F"}, CLI::ignore_case));
  command->add_option("--palette", call.Palette, "Palette by name or number");
  command->add_flag("--bar", call.Bar, "With the palette bar");
  command->add_flag("--date", call.Date, "With the date below");
  command->add_flag("--time", call.Time, "With the time");
  command->add_flag("--emissivity", call.Emissivity, "With the emissivity");
  command->add_flag("--extremes", call.Extremes, "With the lowest and highest temperature");
  command->add_flag("--memo", call.Memo, "With the annotation");
  command->add_flag("--visible", call.Visible, "With the visible-light picture");
  auto* const replace =
      command->add_flag("--replace", call.Replace, "Replace files of the same name");
  command->add_flag("--skip", call.Skip, "Leave out what is there already")->excludes(replace);
  command->add_option("--jobs", call.Jobs, "Images to work on at once")->check(CLI::Range(1, 1024));
  return command;
}

CLI::App* AddCardDeleteAll(CLI::App& card, std::string& folder) {
  CLI::App* const command = AddCard("delete-all", "Delete all its images", card, folder);
  AddYes(*command);
  return command;
}

}  // namespace

int RunToolCommandLine(int argc, char** argv) {
  // The platform layer has opinions of its own on broken files and on the surroundings; this tool
  // gives its own reasons.
  qInstallMessageHandler(PrintOwnMessages);
  CLI::App tool("Looks into radiometric infrared images and turns them into ordinary files.",
                "tessatool");
  tool.require_subcommand(1);
  tool.set_version_flag("--version", "tessatool " + ProgramVersion().toStdString());

  InfoCall info;
  ExportCall exports;
  FramesCall frames;
  VisibleCall visible;
  SoundCall sound;
  EmbedCall embed;
  ThumbnailCall thumbnail;
  NoteCall note;
  BringCall copy;
  BringCall move;
  move.Moves = true;
  std::vector<std::string> deleted;
  SheetCall sheet;
  CardListCall cardList;
  CardDownloadCall cardDownload;
  std::string emptiedCard;
  CLI::App& card = *tool.add_subcommand("card", "Work with the memory card of a camera");
  card.require_subcommand(1);
  struct Command {
    const CLI::App* Parser;
    std::function<int()> Run;
  };
  // In the order of the help.
  const std::vector<Command> commands = {
      {AddInfo(tool, info), [&] { return RunInfo(info); }},
      {AddExport(tool, exports), [&] { return RunExport(exports); }},
      {AddFrames(tool, frames), [&] { return RunFrames(frames); }},
      {AddVisible(tool, visible), [&] { return RunVisible(visible); }},
      {AddSound(tool, sound), [&] { return RunSound(sound); }},
      {AddEmbed(tool, embed), [&] { return RunEmbed(embed); }},
      {AddThumbnail(tool, thumbnail), [&] { return RunThumbnail(thumbnail); }},
      {AddNote(tool, note), [&] { return RunNote(note); }},
      {AddBringing("copy", "Copy images and their sound files", tool, copy),
       [&] { return RunBring(copy); }},
      {AddBringing("move", "Move images and their sound files", tool, move),
       [&] { return RunBring(move); }},
      {AddDelete(tool, deleted), [&] { return RunDelete(deleted); }},
      {AddSheet(tool, sheet), [&] { return RunSheet(sheet); }},
      {AddCardList(card, cardList), [&] { return RunCardList(cardList); }},
      {AddCardDownload(card, cardDownload), [&] { return RunCardDownload(cardDownload); }},
      {AddCardDeleteAll(card, emptiedCard), [&] { return RunCardDeleteAll(emptiedCard); }}};

  try {
    tool.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // Help or version.
      tool.exit(error);
      std::cout.flush();
      return FinishOutput(std::cout ? kToolDone : kToolFailed);
    }
    PrintError(error.what());
    std::fputs("Run with --help for more information.\n", stderr);
    return kToolWrongCall;
  }
  const auto called = std::find_if(commands.begin(), commands.end(),
                                   [](const Command& command) { return command.Parser->parsed(); });
  return FinishOutput(called->Run());
}

}  // namespace tessa
