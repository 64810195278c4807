#pragma once

#include <cairo-pdf.h>
#include <pango/pangocairo.h>

#include <memory>

/// Pango's and Cairo's objects with an owner. For the implementation files of this folder.
namespace varnic::Pango {

/// Frees an object by one of the libraries' functions.
template <auto Function>
struct Release {
    template <typename Object>
    void operator()(Object* object) const {
        Function(object);
    }
};

template <typename Object>
using Shared = std::unique_ptr<Object, Release<g_object_unref>>;

using FontMap = Shared<PangoFontMap>;
using Context = Shared<PangoContext>;
using Layout = Shared<PangoLayout>;
using LineIterator = std::unique_ptr<PangoLayoutIter, Release<pango_layout_iter_free>>;
using Attributes = std::unique_ptr<PangoAttrList, Release<pango_attr_list_unref>>;
using FontDescription = std::unique_ptr<PangoFontDescription, Release<pango_font_description_free>>;
using TabArray = std::unique_ptr<PangoTabArray, Release<pango_tab_array_free>>;
using Surface = std::unique_ptr<cairo_surface_t, Release<cairo_surface_destroy>>;
using Canvas = std::unique_ptr<cairo_t, Release<cairo_destroy>>;

/// Points to Pango's units and back.
inline int units(double points) {
    return pango_units_from_double(points);
}

inline double points(int units) {
    return pango_units_to_double(units);
}

} // namespace varnic::Pango
