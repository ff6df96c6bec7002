#pragma once

// Dialog information of a block: its description, and descriptors of its dialog parameters.

#include "platform/block_diagram/object.hpp"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

/// Static description of one dialog parameter.
class KINEMO_PLATFORM_API GTPrmDesc {
 public:
  /// Types as `gdi_param_type` tells them.
  enum Type { EDIT = 0, BOOLEAN = 1, STRING = 2, POPUP = 3 };

  GTPrmDesc(std::string name, Type type, int category, std::uint64_t attributes);
  virtual ~GTPrmDesc();
  const std::string& getName() const { return name_; }
  Type type() const { return type_; }
  int category() const { return category_; }
  std::uint64_t attributes() const { return attributes_; }
  const std::string& prompt() const { return prompt_; }
  void setPrompt(const std::string& prompt) { prompt_ = prompt; }

 private:
  std::string name_;
  std::string prompt_;
  Type type_;
  int category_;
  std::uint64_t attributes_;
};

/// Options of a parameter descriptor, all at their defaults.
struct GTPrmOptions {};

/// A parameter that is "on" or "off".
template <class Owner, class Accessor>
class GTBooleanPrmDesc : public GTPrmDesc {
 public:
  GTBooleanPrmDesc(const std::string& name, int category, std::uint64_t attributes, const GTPrmOptions& = {})
      : GTPrmDesc(name, BOOLEAN, category, attributes) {}
};

/// A list of parameter descriptors, shared by all blocks of a kind.
class KINEMO_PLATFORM_API GTPrmDescList {
 public:
  virtual ~GTPrmDescList();
  virtual int getLength() const;
  virtual const GTPrmDesc* const* getPrmDescs() const;
  virtual GTPrmDesc** getPrmDescs();
  virtual void ValidatePrmPortData() const;
  virtual void CheckPrmPortData() const;

  void addPrmDesc(const boost::shared_ptr<GTPrmDesc>& descriptor);

 protected:
  GTPrmDescList();
  GTPrmDescList(const GTPrmDescList&);
  GTPrmDescList(GTPrmDescList&&) noexcept;
  GTPrmDescList& operator=(const GTPrmDescList&);
  GTPrmDescList& operator=(GTPrmDescList&&) noexcept;

 private:
  std::vector<boost::shared_ptr<GTPrmDesc>> owned_;
  std::vector<GTPrmDesc*> pointers_;
};

struct GTDialogInfo;

/// The list of descriptors is kept by pointer and must outlive the block.
KINEMO_PLATFORM_API void sdi_prm_desc_list(GTDialogInfo* dialog, GTPrmDesc** descriptors);
KINEMO_PLATFORM_API void sdi_num_dialog_params(GTDialogInfo* dialog, int count);
KINEMO_PLATFORM_API void sdi_block_desc(GTDialogInfo* dialog, const ustring& description);
KINEMO_PLATFORM_API const ustring& gdi_block_desc(const GTDialogInfo* dialog);
KINEMO_PLATFORM_API int gdi_num_dialog_params(const GTDialogInfo* dialog);
KINEMO_PLATFORM_API const GTPrmDesc* gdi_prm_desc(const GTDialogInfo* dialog, int i);
/// 1 a boolean, 2 a string, other numbers any other type.
KINEMO_PLATFORM_API int gdi_param_type(const GTDialogInfo* dialog, int i);

/// The evaluated value of a dialog parameter; owned by the block.
struct gtParam_tag {
  std::string text;
};
