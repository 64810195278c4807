import Varnic.Theme as Theme

/// The program's mark on paper.
Theme.PaintedNib {
    color: Theme.Palette.you
    paper: Theme.Palette.paper
}
