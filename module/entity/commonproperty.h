// The seven properties that every entity has, by name.
//
//   name           value                                            written from
//   COLOR          colour index (RTSHORT)                           RTSHORT
//   LINETYPE       linetype name (RTSTR)                            RTSTR
//   LINETYPESCALE  factor (RTREAL)                                  RTREAL
//   VISIBILITY     1 visible, 0 invisible (RTSHORT)                 RTSHORT, 1 or anything else
//   LAYER          layer name (RTSTR)                               RTSTR
//   LINEWEIGHT     1/100 mm or a negative code (RTSHORT)            RTSHORT
//   PLOTSTYLENAME  plot style name (RTSTR)                          RTSTR
//
// Names are known in any case.
#pragma once

#include <span>

#include "module/app/rbchain.h"

struct CommonProperty;

class CCommonEntProperty {
 public:
  CCommonEntProperty();
  CCommonEntProperty(const CCommonEntProperty&) = delete;
  CCommonEntProperty& operator=(const CCommonEntProperty&) = delete;
  virtual ~CCommonEntProperty();

  // Appends the property's value; RTNIL when the object is no entity or the name no property.
  // [object open for read, or null]
  void appendValue(RbChain& list, const GcDbObject* object, const GCHAR* name) const;
  // Sets the property. False when nothing was set: no entity, no such property, a value of another type. Whether
  // the entity accepts the value (a layer that exists, say) is not looked at.  [object open for write, or null]
  bool put(GcDbObject* object, const GCHAR* name, const resbuf& value) const;

 private:
  [[nodiscard]] const CommonProperty* find(const GCHAR* name) const;
  std::span<const CommonProperty> m_properties;
};
