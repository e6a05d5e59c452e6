// How the stand-in answers where the published reference leaves more than one answer open. The
// add-in has to work under each of them; the first value is what a plain stand-in does.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace standin {

struct HostOptions {
  // Application.Version. Other texts of the same host: "6.0.6356", "6.0", "11.0".
  std::wstring version = L"11.0.5510";

  // The open web's address. Empty: "file:///C:/My Webs/site" of the folder; else for instance
  // "http://server/sub" over the same folder.
  std::wstring webUrl;

  // "Nothing" is handed over as a null object (false) or as an empty variant (true).
  bool nothingIsEmpty = false;

  // Without an open web ActiveWeb is Nothing (false) or refuses (true).
  bool noWebIsError = false;

  // LocateFolder and LocateFile answer a path that is not there with Nothing (false) or refuse.
  bool absentFolderIsError = false;
  bool absentFileIsError = false;

  // Folders.Add with a name that is there refuses (false) or gives that folder (true).
  bool addExistingFolderGivesIt = false;
  // Folders.Add with a path of several new levels refuses (false) or makes them all (true).
  bool addMakesLevels = false;
  // Folders.Add with the absolute URL of a new folder refuses (false) or makes it (true).
  bool addTakesUrl = false;

  // Web-relative paths with a "/" at their front, or at their end, are refused (false) or taken.
  bool leadingSlashTaken = false;
  bool trailingSlashTaken = true;

  // MakeAbs puts a path with a leading "/" below the base (false) or below the server (true).
  bool makeAbsFromServer = false;

  // Web.Url leaves blanks and the like as they are (false) or escapes them (true); the Url of a
  // folder or file likewise.
  bool webUrlEscaped = false;
  bool itemUrlsEscaped = false;

  // The arguments of LocateFolder and LocateFile, and the name for Folders.Add, are what they are
  // (false), or addresses in a page (true): escapes stand for letters, "#" ends them.
  bool locateUnescapes = false;
  bool addUnescapes = false;

  // Folders and Files list their items in the order of their names (false) or in another (true).
  bool listedUnsorted = false;

  // The open web's own root folder says IsWeb False (false) or True (true).
  bool rootIsWeb = false;
  // The host's own "_vti" folders are left out of Folders (false) or listed (true).
  bool vtiFoldersListed = false;

  // Controls.Add with Before one past the last control appends (false) or refuses (true).
  bool beforePastEndRefused = false;

  // PasteFace takes the clipboard's bitmap as it is (false), or, where they are, the two formats
  // "Toolbar Button Face" and "Toolbar Button Mask" and makes the parts see-through that are white
  // in the mask (true).
  bool maskedFaces = false;

  // The older automation object "FrontPage.Explorer.<version>" is not registered (false) or is;
  // read when the host is made.
  bool explorerObject = false;

  // How long Files.Add takes, in milliseconds: a server's web is slower than a disk.
  long importMilliseconds = 0;

  // The list of add-ins stands in the registry's key of all versions (false) or in that of
  // Office 11.
  bool addInsOfVersion = false;

  // --- The shape of the menus; read when the host is made. ---
  bool menuBar = true;          // false: ActiveMenuBar is Nothing
  long menuBarType = 1;         // 0 normal, 1 menu bar, 2 pop-up
  bool templatesMenu = true;    // false: no control 31252
  long templatesMenuType = 10;  // 10, 12 or 13 for a pop-up, 1 for a plain button
  bool copyAnchor = true;       // entry 7121
  bool onlineAnchor = true;     // entry 7127
  bool toolbar = true;          // a bar "Standard" behind the menu bar

  // Sets the option of that name from a text ("1", "0", "true", "false", a number, a text). False
  // when there is no such option or the text does not fit it.
  bool set(std::wstring_view name, std::wstring_view value);
  static std::vector<std::wstring> names();
};

}  // namespace standin
