// What OUTPUT EXPORT asks a host for: one part for each of its subcommands.
//
// ExportSpec holds them in the order in which they are written; ExportXML turns it into a document
// and back. Setters are named as the commands call them. Texts are in the current encoding when a
// command sets them. What was not set has a default, which its getter gives; a getter that returns
// nothing leaves the choice to the host.
//
// Texts that commands escape for HTML before they set them, the name and what a report has, are
// kept as they come.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/exportspec/export_setting.h"

namespace vornwout {

// What tables that are wider than a page become.
enum class WIDE_TABLES_TYPE { ASIS, SHRINK, WRAP };
template <>
struct Keywords<WIDE_TABLES_TYPE> {
  static constexpr std::array kNames{"ASIS", "SHRINK", "WRAP"};
};

enum class MEASUREMENT_TYPE { INCHES, MM };
template <>
struct Keywords<MEASUREMENT_TYPE> {
  static constexpr std::array kNames{"INCHES", "MM"};
};
using PageMeasure = Measure<MEASUREMENT_TYPE>;

/// What charts become beside a page or a text.
enum class ChartImageFormat { JPG, PNG, BMP };
template <>
struct Keywords<ChartImageFormat> {
  static constexpr std::array kNames{"JPG", "PNG", "BMP"};
};

/// Which document is exported, and how much is told about it.
class ExportGlobalSpec : public ExportOption {
 public:
  enum class PRINT_OPTION { ALWAYS, NEVER, ERRORS };

  void setName(const std::string& name) { name_ = name; }
  std::string getName() const { return name_.value_or(""); }
  void setPrintOption(PRINT_OPTION printOption) { printOption_ = printOption; }
  PRINT_OPTION getPrintOption() const { return printOption_.value_or(PRINT_OPTION::ALWAYS); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("name", self.name_);
    visitor("printOption", self.printOption_);
  }

 private:
  std::optional<std::string> name_;
  std::optional<PRINT_OPTION> printOption_;
};

template <>
struct Keywords<ExportGlobalSpec::PRINT_OPTION> {
  static constexpr std::array kNames{"ALWAYS", "NEVER", "ERRORS"};
};

/// Which objects, layers and views are exported.
class ExportContentsSpec : public ExportOption {
 public:
  enum class EXPORT_TYPE { ALL, VISIBLE };
  /// PRINTSETTING: as each table says itself.
  enum class LAYERS_TYPE { PRINTSETTING, ALL, VISIBLE };
  enum class MODELVIEWS_TYPE { PRINTSETTING, ALL, VISIBLE };

  void setExport(EXPORT_TYPE exports) { exports_ = exports; }
  EXPORT_TYPE getExport() const { return exports_.value_or(EXPORT_TYPE::VISIBLE); }
  void setLayers(LAYERS_TYPE layers) { layers_ = layers; }
  LAYERS_TYPE getLayers() const { return layers_.value_or(LAYERS_TYPE::PRINTSETTING); }
  void setModelViews(MODELVIEWS_TYPE modelViews) { modelViews_ = modelViews; }
  MODELVIEWS_TYPE getModelViews() const {
    return modelViews_.value_or(MODELVIEWS_TYPE::PRINTSETTING);
  }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("export", self.exports_);
    visitor("layers", self.layers_);
    visitor("modelViews", self.modelViews_);
  }

 private:
  std::optional<EXPORT_TYPE> exports_;
  std::optional<LAYERS_TYPE> layers_;
  std::optional<MODELVIEWS_TYPE> modelViews_;
};

template <>
struct Keywords<ExportContentsSpec::EXPORT_TYPE> {
  static constexpr std::array kNames{"ALL", "VISIBLE"};
};

template <>
struct Keywords<ExportContentsSpec::LAYERS_TYPE> {
  static constexpr std::array kNames{"PRINTSETTING", "ALL", "VISIBLE"};
};

template <>
struct Keywords<ExportContentsSpec::MODELVIEWS_TYPE> {
  static constexpr std::array kNames{"PRINTSETTING", "ALL", "VISIBLE"};
};

/// What all document types have.
class DocumentOption : public ExportOption {
 public:
  void setDocumentFile(const std::string& documentFile) { documentFile_ = documentFile; }
  std::string getDocumentFile() const { return documentFile_.value_or(""); }

 protected:
  std::optional<std::string> documentFile_;
};

/// Document types whose tables may come without their notes and captions.
class NotedDocumentOption : public DocumentOption {
 public:
  void setNotesAndCaptions(bool notesAndCaptions) { notesAndCaptions_ = notesAndCaptions; }
  bool getNotesAndCaptions() const { return notesAndCaptions_.value_or(true); }

 protected:
  std::optional<bool> notesAndCaptions_;
};

/// Pages and slides.
class PagedOption : public NotedDocumentOption {
 public:
  void setTopMargin(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    topMargin_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getTopMargin() const { return topMargin_; }
  void setBottomMargin(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    bottomMargin_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getBottomMargin() const { return bottomMargin_; }
  void setLeftMargin(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    leftMargin_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getLeftMargin() const { return leftMargin_; }
  void setRightMargin(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    rightMargin_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getRightMargin() const { return rightMargin_; }

 protected:
  template <typename Self, typename Visitor>
  static void visitMargins(Self& self, Visitor&& visitor) {
    visitor("topMargin", self.topMargin_);
    visitor("bottomMargin", self.bottomMargin_);
    visitor("leftMargin", self.leftMargin_);
    visitor("rightMargin", self.rightMargin_);
  }

  std::optional<PageMeasure> topMargin_;
  std::optional<PageMeasure> bottomMargin_;
  std::optional<PageMeasure> leftMargin_;
  std::optional<PageMeasure> rightMargin_;
};

/// What all image types have.
class ImageOption : public ExportOption {
 public:
  void setImageRoot(std::string& imageRoot) { imageRoot_ = imageRoot; }
  std::string getImageRoot() const { return imageRoot_.value_or(""); }

 protected:
  std::optional<std::string> imageRoot_;
};

/// Image types whose size is given as a share of the picture's own.
class SizedImageOption : public ImageOption {
 public:
  void setPercentSize(double percent, const std::string& token) { percentSize_ = {percent, token}; }
  double getPercentSize() const { return percentSize_ ? percentSize_->value : 100; }

 protected:
  std::optional<SourceNumber> percentSize_;
};

/// DOC: a document of a word processor.
class ExportDocSpec : public PagedOption {
 public:
  void setWideTables(WIDE_TABLES_TYPE wideTables) { wideTables_ = wideTables; }
  WIDE_TABLES_TYPE getWideTables() const { return wideTables_.value_or(WIDE_TABLES_TYPE::WRAP); }
  void setPageSizeWidth(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    pageSizeWidth_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getPageSizeWidth() const { return pageSizeWidth_; }
  void setPageSizeHeight(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    pageSizeHeight_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getPageSizeHeight() const { return pageSizeHeight_; }
  void setPageBreaks(bool pageBreaks) { pageBreaks_ = pageBreaks; }
  bool getPageBreaks() const { return pageBreaks_.value_or(true); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("documentFile", self.documentFile_);
    visitor("notesAndCaptions", self.notesAndCaptions_);
    visitor("wideTables", self.wideTables_);
    visitor("pageSizeWidth", self.pageSizeWidth_);
    visitor("pageSizeHeight", self.pageSizeHeight_);
    visitMargins(self, visitor);
    visitor("pageBreaks", self.pageBreaks_);
  }

 private:
  std::optional<WIDE_TABLES_TYPE> wideTables_;
  std::optional<PageMeasure> pageSizeWidth_;
  std::optional<PageMeasure> pageSizeHeight_;
  std::optional<bool> pageBreaks_;
};

/// HTML: one page.
class ExportHTMLSpec : public NotedDocumentOption {
 public:
  using IMAGEFORMAT = ChartImageFormat;

  /// Nothing for charts as they are.
  void setImageFormat(IMAGEFORMAT imageFormat) { imageFormat_ = imageFormat; }
  std::optional<IMAGEFORMAT> getImageFormat() const { return imageFormat_; }
  void setStyling(bool styling) { styling_ = styling; }
  bool getStyling() const { return styling_.value_or(true); }
  void setInteractiveLayers(bool interactiveLayers) { interactiveLayers_ = interactiveLayers; }
  bool getInteractiveLayers() const { return interactiveLayers_.value_or(false); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("documentFile", self.documentFile_);
    visitor("notesAndCaptions", self.notesAndCaptions_);
    visitor("imageFormat", self.imageFormat_);
    visitor("styling", self.styling_);
    visitor("interactiveLayers", self.interactiveLayers_);
  }

 private:
  std::optional<IMAGEFORMAT> imageFormat_;
  std::optional<bool> styling_;
  std::optional<bool> interactiveLayers_;
};

/// REPORT: a web report.
class ExportReportSpec : public DocumentOption {
 public:
  enum class Excluded { TEXTS, LOGS, NOTES, WARNINGS };
  struct Link {
    std::string first;
    std::string second;
    friend bool operator==(const Link&, const Link&) = default;
  };
  using Item = std::variant<Excluded, Link>;

  void setTitle(const std::string& title) { title_ = title; }
  std::string getTitle() const { return title_.value_or(""); }
  /// One file with everything that belongs to the page.
  void setMHT(bool mht) { mht_ = mht; }
  bool getMHT() const { return mht_.value_or(false); }
  void restyle(bool restyles) { restyle_ = restyles; }
  bool restyles() const { return restyle_.value_or(true); }

  void excludeTexts() { items_.emplace_back(Excluded::TEXTS); }
  void excludeLogs() { items_.emplace_back(Excluded::LOGS); }
  void excludeNotes() { items_.emplace_back(Excluded::NOTES); }
  void excludeWarnings() { items_.emplace_back(Excluded::WARNINGS); }
  bool excludes(Excluded what) const;
  void addURL(const std::string& first, const std::string& second) {
    items_.emplace_back(Link{first, second});
  }
  /// What is excluded and the links, in the order in which they were given.
  const std::vector<Item>& items() const { return items_; }
  std::vector<Link> links() const;

  /// Gives each setting with the name of its attribute; the items are none.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("documentFile", self.documentFile_);
    visitor("title", self.title_);
    visitor("mht", self.mht_);
    visitor("restyle", self.restyle_);
  }

 private:
  std::optional<std::string> title_;
  std::optional<bool> mht_;
  std::optional<bool> restyle_;
  std::vector<Item> items_;
};
template <>
struct Keywords<ExportReportSpec::Excluded> {
  static constexpr std::array kNames{"TEXTS", "LOGS", "NOTES", "WARNINGS"};
};

/// PDF.
class ExportPDFSpec : public DocumentOption {
 public:
  void setEmbedBookmarks(bool embedBookmarks) { embedBookmarks_ = embedBookmarks; }
  bool getEmbedBookmarks() const { return embedBookmarks_.value_or(true); }
  void setEmbedFonts(bool embedFonts) { embedFonts_ = embedFonts; }
  bool getEmbedFonts() const { return embedFonts_.value_or(true); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("documentFile", self.documentFile_);
    visitor("embedBookmarks", self.embedBookmarks_);
    visitor("embedFonts", self.embedFonts_);
  }

 private:
  std::optional<bool> embedBookmarks_;
  std::optional<bool> embedFonts_;
};

/// PPT: slides.
class ExportPPTSpec : public PagedOption {
 public:
  void setSlideTitles(bool slideTitles) { slideTitles_ = slideTitles; }
  bool getSlideTitles() const { return slideTitles_.value_or(true); }
  void setWideTables(WIDE_TABLES_TYPE wideTables) { wideTables_ = wideTables; }
  WIDE_TABLES_TYPE getWideTables() const { return wideTables_.value_or(WIDE_TABLES_TYPE::SHRINK); }
  void setSlideSizeWidth(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    slideSizeWidth_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getSlideSizeWidth() const { return slideSizeWidth_; }
  void setSlideSizeHeight(MEASUREMENT_TYPE unit, double value, const std::string& token) {
    slideSizeHeight_ = {unit, value, token};
  }
  const std::optional<PageMeasure>& getSlideSizeHeight() const { return slideSizeHeight_; }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("documentFile", self.documentFile_);
    visitor("notesAndCaptions", self.notesAndCaptions_);
    visitor("slideTitles", self.slideTitles_);
    visitor("wideTables", self.wideTables_);
    visitor("slideSizeWidth", self.slideSizeWidth_);
    visitor("slideSizeHeight", self.slideSizeHeight_);
    visitMargins(self, visitor);
  }

 private:
  std::optional<bool> slideTitles_;
  std::optional<WIDE_TABLES_TYPE> wideTables_;
  std::optional<PageMeasure> slideSizeWidth_;
  std::optional<PageMeasure> slideSizeHeight_;
};

/// TEXT.
class ExportTextSpec : public NotedDocumentOption {
 public:
  using IMAGEFORMAT = ChartImageFormat;
  enum class ENCODING_TYPE { LOCALE, UTF8, UTF16 };
  enum class SEPARATOR_TYPE { SPACE, TAB };

  void setEncoding(ENCODING_TYPE encoding) { encoding_ = encoding; }
  ENCODING_TYPE getEncoding() const { return encoding_.value_or(ENCODING_TYPE::UTF8); }
  /// Characters of every column; columns that fit their contents have the width 0.
  void setColumnWidth(int width, const std::string& token, bool autofit) {
    columnWidth_ = {static_cast<double>(width), token};
    columnWidthAutofit_ = autofit;
  }
  /// Nothing for columns that fit their contents, which is the default.
  std::optional<int> getColumnWidth() const;
  void setSeparator(SEPARATOR_TYPE separator) { separator_ = separator; }
  SEPARATOR_TYPE getSeparator() const { return separator_.value_or(SEPARATOR_TYPE::SPACE); }
  void setRowBorder(char border) { rowBorder_ = std::string(1, border); }
  void setColumnBorder(char border) { columnBorder_ = std::string(1, border); }
  /// For a character of several bytes.
  void setRowBorder(const std::string& border) { rowBorder_ = border; }
  void setColumnBorder(const std::string& border) { columnBorder_ = border; }
  /// One character.
  std::string getRowBorder() const { return rowBorder_.value_or("-"); }
  std::string getColumnBorder() const { return columnBorder_.value_or("|"); }
  void setImageFormat(IMAGEFORMAT imageFormat) { imageFormat_ = imageFormat; }
  IMAGEFORMAT getImageFormat() const { return imageFormat_.value_or(IMAGEFORMAT::PNG); }
  bool isImageFormatGiven() const { return imageFormat_.has_value(); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("documentFile", self.documentFile_);
    visitor("encoding", self.encoding_);
    visitor("notesAndCaptions", self.notesAndCaptions_);
    visitor("columnWidth", self.columnWidth_);
    visitor("columnWidthAutofit", self.columnWidthAutofit_);
    visitor("separator", self.separator_);
    visitor("rowBorder", self.rowBorder_);
    visitor("columnBorder", self.columnBorder_);
    visitor("imageFormat", self.imageFormat_);
  }

 private:
  std::optional<ENCODING_TYPE> encoding_;
  std::optional<SourceNumber> columnWidth_;
  std::optional<bool> columnWidthAutofit_;
  std::optional<SEPARATOR_TYPE> separator_;
  std::optional<std::string> rowBorder_;
  std::optional<std::string> columnBorder_;
  std::optional<IMAGEFORMAT> imageFormat_;
};
template <>
struct Keywords<ExportTextSpec::ENCODING_TYPE> {
  static constexpr std::array kNames{"LOCALE", "UTF8", "UTF16"};
};
template <>
struct Keywords<ExportTextSpec::SEPARATOR_TYPE> {
  static constexpr std::array kNames{"SPACE", "TAB"};
};

/// XLS, XLSX and XLSM: a sheet of a workbook.
class ExportXLSSpec : public NotedDocumentOption {
 public:
  enum class OPERATION_TYPE { CREATEFILE, CREATESHEET, MODIFYSHEET };
  enum class LOCATION_TYPE { LASTCOLUMN, LASTROW, STARTCELL };

  void setOperation(OPERATION_TYPE operation) { operation_ = operation; }
  OPERATION_TYPE getOperation() const { return operation_.value_or(OPERATION_TYPE::CREATEFILE); }
  void setSheet(const std::string& sheet) { sheet_ = sheet; }
  std::string getSheet() const { return sheet_.value_or(""); }
  void setLocation(LOCATION_TYPE location) { location_ = location; }
  LOCATION_TYPE getLocation() const { return location_.value_or(LOCATION_TYPE::LASTCOLUMN); }
  /// A reference such as B3.
  void setStartCell(const std::string& startCell) { startCell_ = startCell; }
  std::string getStartCell() const { return startCell_.value_or(""); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("documentFile", self.documentFile_);
    visitor("operation", self.operation_);
    visitor("sheet", self.sheet_);
    visitor("location", self.location_);
    visitor("startCell", self.startCell_);
    visitor("notesAndCaptions", self.notesAndCaptions_);
  }

 private:
  std::optional<OPERATION_TYPE> operation_;
  std::optional<std::string> sheet_;
  std::optional<LOCATION_TYPE> location_;
  std::optional<std::string> startCell_;
};

template <>
struct Keywords<ExportXLSSpec::OPERATION_TYPE> {
  static constexpr std::array kNames{"CREATEFILE", "CREATESHEET", "MODIFYSHEET"};
};

template <>
struct Keywords<ExportXLSSpec::LOCATION_TYPE> {
  static constexpr std::array kNames{"LASTCOLUMN", "LASTROW", "STARTCELL"};
};

/// BMP.
class ExportBMPSpec : public SizedImageOption {
 public:
  void setCompress(bool compress) { compress_ = compress; }
  bool getCompress() const { return compress_.value_or(true); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("imageRoot", self.imageRoot_);
    visitor("compress", self.compress_);
    visitor("percentSize", self.percentSize_);
  }

 private:
  std::optional<bool> compress_;
};

/// EMF.
class ExportEMFSpec : public SizedImageOption {
 public:
  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("imageRoot", self.imageRoot_);
    visitor("percentSize", self.percentSize_);
  }
};

/// EPS.
class ExportEPSSpec : public ImageOption {
 public:
  enum class WIDTH_UNIT { PERCENT, CENTIMETERS, INCHES, POINTS };
  enum class FONT_HANDLING { REFERENCES, CURVES };

  void setWidth(WIDTH_UNIT unit, const std::string& token, double value) {
    width_ = {unit, value, token};
  }
  /// Nothing for the width that a picture has.
  const std::optional<Measure<WIDTH_UNIT>>& getWidth() const { return width_; }
  void setPreview(bool preview) { preview_ = preview; }
  bool getPreview() const { return preview_.value_or(false); }
  void setFontHandling(FONT_HANDLING fontHandling) { fontHandling_ = fontHandling; }
  FONT_HANDLING getFontHandling() const {
    return fontHandling_.value_or(FONT_HANDLING::REFERENCES);
  }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("imageRoot", self.imageRoot_);
    visitor("width", self.width_);
    visitor("preview", self.preview_);
    visitor("fontHandling", self.fontHandling_);
  }

 private:
  std::optional<Measure<WIDTH_UNIT>> width_;
  std::optional<bool> preview_;
  std::optional<FONT_HANDLING> fontHandling_;
};

template <>
struct Keywords<ExportEPSSpec::WIDTH_UNIT> {
  static constexpr std::array kNames{"PERCENT", "CENTIMETERS", "INCHES", "POINTS"};
};

template <>
struct Keywords<ExportEPSSpec::FONT_HANDLING> {
  static constexpr std::array kNames{"REFERENCES", "CURVES"};
};

/// JPG.
class ExportJPGSpec : public SizedImageOption {
 public:
  void setGrayscale(bool grayscale) { grayscale_ = grayscale; }
  bool getGrayscale() const { return grayscale_.value_or(false); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("imageRoot", self.imageRoot_);
    visitor("percentSize", self.percentSize_);
    visitor("grayscale", self.grayscale_);
  }

 private:
  std::optional<bool> grayscale_;
};

/// PNG.
class ExportPNGSpec : public SizedImageOption {
 public:
  enum class DEPTH { SCREEN, BLACKWHITE, GRAYS256, COLORS16, COLORS256, TRUE24BIT, TRUE32BIT };

  void setDepth(DEPTH depth) { depth_ = depth; }
  DEPTH getDepth() const { return depth_.value_or(DEPTH::SCREEN); }

  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("imageRoot", self.imageRoot_);
    visitor("percentSize", self.percentSize_);
    visitor("depth", self.depth_);
  }

 private:
  std::optional<DEPTH> depth_;
};

template <>
struct Keywords<ExportPNGSpec::DEPTH> {
  static constexpr std::array kNames{"SCREEN",    "BLACKWHITE", "GRAYS256", "COLORS16",
                                     "COLORS256", "TRUE24BIT",  "TRUE32BIT"};
};

/// TIF.
class ExportTIFSpec : public SizedImageOption {
 public:
  /// Gives each setting with the name of its attribute.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("imageRoot", self.imageRoot_);
    visitor("percentSize", self.percentSize_);
  }
};

/// All of them.
struct ExportSpec {
  ExportGlobalSpec global;
  ExportContentsSpec contents;
  ExportDocSpec doc;
  ExportHTMLSpec html;
  ExportReportSpec report;
  ExportPDFSpec pdf;
  ExportPPTSpec ppt;
  ExportTextSpec text;
  ExportXLSSpec xls;
  ExportXLSSpec xlsx;
  ExportXLSSpec xlsm;
  ExportBMPSpec bmp;
  ExportEMFSpec emf;
  ExportEPSSpec eps;
  ExportJPGSpec jpg;
  ExportPNGSpec png;
  ExportTIFSpec tif;

  /// Gives each part with the name of its element, in the order of the document.
  template <typename Self, typename Visitor>
  static void visit(Self& self, Visitor&& visitor) {
    visitor("global", self.global);
    visitor("contents", self.contents);
    visitor("doc", self.doc);
    visitor("html", self.html);
    visitor("report", self.report);
    visitor("pdf", self.pdf);
    visitor("ppt", self.ppt);
    visitor("text", self.text);
    visitor("xls", self.xls);
    visitor("xlsx", self.xlsx);
    visitor("xlsm", self.xlsm);
    visitor("bmp", self.bmp);
    visitor("emf", self.emf);
    visitor("eps", self.eps);
    visitor("jpg", self.jpg);
    visitor("png", self.png);
    visitor("tif", self.tif);
  }
};

}  // namespace vornwout
