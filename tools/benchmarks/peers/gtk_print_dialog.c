// Performance: GTK's print dialog, from one source for version 3 and version 4. It ends by itself
// once its window's first frame is painted.
#include <gtk/gtk.h>
#include <gtk/gtkunixprint.h>

#include <unistd.h>

// GTK 3's frame clock also ticks for a window that is not drawn yet.
static gboolean drawn = GTK_MAJOR_VERSION >= 4;

static void painted(GdkFrameClock* clock, gpointer data) {
    (void)clock;
    (void)data;
    if (drawn)
        _exit(0);
}

static void realized(GtkWidget* window, gpointer data) {
    (void)data;
    g_signal_connect(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(painted), NULL);
}

#if GTK_MAJOR_VERSION < 4
static gboolean draws(GtkWidget* window, void* painter, gpointer data) {
    (void)window;
    (void)painter;
    (void)data;
    drawn = TRUE;
    return FALSE;
}
#endif

int main(int argc, char** argv) {
#if GTK_MAJOR_VERSION >= 4
    (void)argc;
    (void)argv;
    gtk_init();
#else
    gtk_init(&argc, &argv);
#endif
    GtkWidget* dialog = gtk_print_unix_dialog_new("Print", NULL);
    gtk_print_unix_dialog_set_manual_capabilities(GTK_PRINT_UNIX_DIALOG(dialog),
                                                  GTK_PRINT_CAPABILITY_GENERATE_PS);
    g_signal_connect_after(dialog, "realize", G_CALLBACK(realized), NULL);
#if GTK_MAJOR_VERSION >= 4
    gtk_window_present(GTK_WINDOW(dialog));
#else
    g_signal_connect_after(dialog, "draw", G_CALLBACK(draws), NULL);
    gtk_widget_show(dialog);
#endif
    GMainLoop* loop = g_main_loop_new(NULL, FALSE);
    g_main_loop_run(loop);
    return 1;
}
