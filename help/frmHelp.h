// "Quillet Help": the contents, the topic that is shown, and the search.
#pragma once

#include <string>

#include "common/forms/Form.h"
#include "common/forms/ListView.h"
#include "common/forms/TreeView.h"
#include "common/forms/controls.h"
#include "help/HelpBook.h"
#include "help/History.h"
#include "help/PageBox.h"
#include "help/command_line.h"

class frmHelp : public forms::Form {
 public:
  frmHelp();

  // Shows the window with the topic that is asked for, the first one where none is, and returns
  // when the user has closed it.
  void ShowHelp(const help::HelpRequest& request);
  // While it is shown: another topic, and the window to the front.
  void showRequest(const help::HelpRequest& request);

 private:
  void Form_Load() override;
  void Form_Unload() override;
  bool preTranslate(MSG& message) override;

  void btnFind_Click();
  void btnPrint_Click();
  void tvContents_Select();
  void lvFound_ItemClick();

  void openBook(const std::wstring& folder);
  void fillContents();
  void showTopic(const std::wstring& name);
  void showFile(const std::wstring& file);
  void display(const std::wstring& file);
  void goBack();
  void goForward();
  void showFound(bool shown);
  forms::TreeView::Node nodeOf(std::size_t topic) const;

  help::HelpRequest request_;
  help::HelpBook book_{L""};
  help::History history_;
  std::vector<forms::TreeView::Node> nodes_;  // of the topics
  bool following_ = false;  // the contents follow the page, not the other way round

  forms::Button btnBack;
  forms::Button btnForward;
  forms::Button btnPrint;
  forms::Label lblSearch;
  forms::TextBox txtSearch;
  forms::Button btnFind;
  forms::Label lblContents;
  forms::TreeView tvContents;
  forms::Label lblFound;
  forms::ListView lvFound;
  help::PageBox pgTopic;
};
